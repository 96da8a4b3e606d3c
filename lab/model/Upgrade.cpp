#include "lab/model/Upgrade.h"

#include <cstdio>
#include <functional>

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/Agents.h"
#include "lab/model/Clusters.h"
#include "lab/model/OldFiles.h"
#include "lab/model/TraceDaemon.h"
#include "lab/store/LabFile.h"
#include "lab/store/OldSchema.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"
#include "lab/store/SchemaCheck.h"

namespace lab {
namespace {

constexpr int kLastOldVersion = kSchemaVersion - 1;
/// Up to this one hosts' files lay in a folder, and there was no memory.
constexpr int kLastWithFolder = static_cast<int>(kOldMigrations.size());

bool HasTable(Store& store, const std::string& name) {
  return Exists(store, "SELECT 1 FROM sqlite_schema WHERE type = 'table' AND name = ?", name);
}

/// What the older table lacks gets its default.
void TakeOver(Store& store, const std::string& table) {
  const std::string old = "old_" + table;
  if (!HasTable(store, old)) return;
  const std::string columns =
      Joined(Texts(store, "SELECT name FROM pragma_table_info(?) ORDER BY cid", old), ", ");
  RunScript(store,
            "INSERT INTO " + table + " (" + columns + ") SELECT " + columns + " FROM " + old);
  RunScript(store, "DROP TABLE " + old);
}

/// Makes every table from scratch and moves the rows, so that the file holds what a new one would.
void MoveRows(Store& store) {
  std::vector<std::string> tables;
  for (const SchemaObject& table : kTables) tables.emplace_back(table.name);
  tables.emplace_back(kHistory.name);
  for (const std::string& index :
       Texts(store, "SELECT name FROM sqlite_schema WHERE type = 'index' AND sql IS NOT NULL"))
    RunScript(store, "DROP INDEX " + index);
  // Or other tables' references would follow.
  RunScript(store, "PRAGMA legacy_alter_table = ON");
  for (const std::string& table : tables) {
    if (HasTable(store, table))
      RunScript(store, "ALTER TABLE " + table + " RENAME TO old_" + table);
  }
  RunScript(store, "PRAGMA legacy_alter_table = OFF");
  MakeSchema(store);
  for (const std::string& table : tables) TakeOver(store, table);
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
  if (version > kLastOldVersion || (hasNewHosts && version > kLastWithFolder)) {
    throw UnusableLab(store.GetPath(), "the lab " + Quoted(store.GetPath()) +
                                           " is of the unknown version " + std::to_string(noted));
  }
  CheckSchema(store, SchemaOfVersion(version));
  if (version == 0) {
    MakeSchema(store);
    return {};
  }
  for (int from = version; from < kLastWithFolder; ++from) {
    RunScript(store, kOldMigrations.at(static_cast<std::size_t>(from)));
  }
  MoveRows(store);
  if (version <= kLastWithFolder) TakeFiles(store, !hasNewHosts);
  DropImpossible(store);
  return "brings the lab up to date from version " + std::to_string(version);
}

}  // namespace lab
