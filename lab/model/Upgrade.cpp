#include "lab/model/Upgrade.h"

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/Agents.h"
#include "lab/model/Clusters.h"
#include "lab/model/OldFiles.h"
#include "lab/model/TraceDaemon.h"
#include "lab/store/LabFile.h"
#include "lab/store/Memory.h"
#include "lab/store/OldSchema.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"
#include "lab/store/SchemaCheck.h"
#include "lab/store/Widen.h"

namespace lab {
namespace {

/// The last one without a memory, and with files of hosts in a folder.
constexpr int kLastMigrated = static_cast<int>(kOldMigrations.size());

/// The tables that the older lab has, by names of today.
std::vector<std::string> OldTables(Store& store) {
  std::vector<std::string> tables;
  for (const auto& [name, sql] : kTables) tables.emplace_back(name);
  tables.emplace_back(kHistory.name);
  std::erase_if(tables, [&](const std::string& table) {
    return !Exists(store, "SELECT 1 FROM sqlite_schema WHERE name = ?", table);
  });
  return tables;
}

/// Moves the rows of a table to the new one of its name, whose last columns it may lack: these get
/// their defaults.
void MoveRowsOf(Store& store, const std::string& table) {
  const auto old = Texts(store, "SELECT name FROM pragma_table_info(?)", "old_" + table);
  auto columns = Texts(store, "SELECT name FROM pragma_table_info(?)", table);
  columns.resize(old.size());
  RunScript(store, "INSERT INTO " + table + " (" + Joined(columns, ", ") + ") SELECT * FROM old_" +
                       table + "; DROP TABLE old_" + table);
}

/// Makes every table from scratch and moves the rows, so that the file holds what a new one would.
void MoveRows(Store& store) {
  for (const std::string& index :
       Texts(store, "SELECT name FROM sqlite_schema WHERE type = 'index' AND sql IS NOT NULL")) {
    RunScript(store, "DROP INDEX " + index);
  }
  const std::vector<std::string> tables = OldTables(store);
  // Or other tables' references would follow.
  RunScript(store, "PRAGMA legacy_alter_table = ON");
  for (const std::string& table : tables) {
    RunScript(store, "ALTER TABLE " + table + " RENAME TO old_" + table);
  }
  RunScript(store, "PRAGMA legacy_alter_table = OFF");
  MakeSchema(store);
  for (const std::string& table : tables) MoveRowsOf(store, table);
}

/// The memory told the rows of the old tables.
void WidenMemory(Store& store) {
  auto entries = EntriesAfter(store, 0);
  std::int64_t grown = 0;
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
    std::string changes = entry->changes.value_or("");
    try {
      changes = Widened(store, changes);
    } catch (const Tovrin::Lib::Korel::KorelCtlException&) {
      // One that is damaged hides no other; 'lab check' names it.
    }
    const auto more = std::ssize(changes) - std::ssize(entry->changes.value_or(""));
    grown += more;
    Execute(store,
            "UPDATE history SET version = ?, size = size + ?, total = total + ?, "
            "changes = CASE WHEN changes IS NULL THEN NULL ELSE CAST(? AS BLOB) END "
            "WHERE number = ?",
            kSchemaVersion, more, grown, changes, entry->number);
  }
}

void Note(const std::string& what) {
  std::fprintf(stderr, "note: the lab is brought up to date without %s\n", what.c_str());
}

/// The model does not refuse it.
bool IsDone(const std::function<void()>& work) {
  try {
    work();
    return true;
  } catch (const Tovrin::Lib::Korel::KorelCtlException&) {
    return false;
  }
}

/// Takes away what older versions let in and this one calls impossible: a second witness, agents
/// that stand for no other host, names that cannot be read.
void DropImpossible(Store& store) {
  for (const Host& host : AllHosts(store)) {
    for (const std::string& uuid :
         Texts(store,
               "SELECT c.uuid FROM memberships m JOIN clusters c ON c.id = m.cluster "
               "WHERE m.host = ? AND m.nodeType = 1 AND EXISTS (SELECT 1 FROM memberships o "
               "WHERE o.cluster = m.cluster AND o.nodeType = 1 AND o.id < m.id)",
               host.id)) {
      if (!IsDone([&] { LeaveCluster(store, host, CheckedUuid(uuid)); })) continue;
      Note("the further witness " + Quoted(host.name) + " of cluster " + uuid);
    }
    for (const Agent& agent : AgentsOf(store, host, true, "")) {
      const bool isPossible = IsDone([&] { CheckedAgent(agent); });
      if (isPossible && agent.nodeUuid != host.nodeUuid) continue;
      Note("the agent " + Quoted(agent.address) + " of host " + Quoted(host.name));
      Execute(store, "DELETE FROM agents WHERE host = ? AND address = ? AND uuid = ?", host.id,
              agent.address, agent.nodeUuid);
    }
    if (IsDone([&] { CheckFaultDomainName(host.faultDomain); })) continue;
    Note("the name of the fault domain of host " + Quoted(host.name));
    ResetFaultDomain(store, host);
  }
}

/// `isOfThese`: the folder holds files of these hosts, and not of those that they replaced.
void TakeFiles(Store& store, bool isOfThese) {
  for (const Host& host : AllHosts(store)) {
    const OldFiles old = isOfThese ? ReadOldFiles(store.GetPath(), host.name) : OldFiles();
    if (!old.isThere) {
      InstallTraceDaemon(store, host);
      continue;
    }
    SetTraceDaemonRunning(store, host, old.isDaemonRunning);
    for (const HostFile& file : old.files) PutFile(store, host, file);
    for (const std::string& path : old.left) {
      Note(store.GetPath() + ".root/" + host.name + path);
    }
  }
}

}  // namespace

std::string UpgradeSchema(Store& store) {
  const int noted = store.GetVersion();
  // Older programs marked a lab whose hosts had been replaced, and their files not yet.
  const bool hasNewHosts = noted < 0;
  const int version = hasNewHosts ? -noted : noted;
  if (version >= kSchemaVersion || (hasNewHosts && version > kLastMigrated)) {
    throw UnusableLab(store.GetPath(), "the lab " + Quoted(store.GetPath()) +
                                           " is of the unknown version " + std::to_string(noted));
  }
  CheckSchema(store, SchemaOfVersion(version));
  if (version == 0) {
    MakeSchema(store);
    return {};
  }
  for (int from = version; from < kLastMigrated; ++from) {
    RunScript(store, kOldMigrations.at(static_cast<std::size_t>(from)));
  }
  MoveRows(store);
  if (version <= kLastMigrated) {
    TakeFiles(store, !hasNewHosts);
  } else {
    WidenMemory(store);
  }
  DropImpossible(store);
  return "brings the lab up to date from version " + std::to_string(version);
}

}  // namespace lab
