#include "lab/model/Upgrade.h"

#include <cstdio>
#include <string>
#include <vector>

#include "lab/base/Text.h"
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

constexpr int kLastOldVersion = static_cast<int>(kOldMigrations.size());
static_assert(kLastOldVersion + 1 == kSchemaVersion);
constexpr int kFirstVersionWithFiles = 4;

/// The tables of the version before, which step by step became what they are.
std::vector<std::string> OldTables() {
  std::vector<std::string> tables;
  for (const auto& [name, sql] : kTables) tables.emplace_back(name);
  tables.emplace_back(kHistory.name);
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
  // Or other tables' references would follow.
  RunScript(store, "PRAGMA legacy_alter_table = ON");
  for (const std::string& table : OldTables()) {
    RunScript(store, "ALTER TABLE " + table + " RENAME TO old_" + table);
  }
  RunScript(store, "PRAGMA legacy_alter_table = OFF");
  for (const auto& [name, sql] : kIndexes) RunScript(store, std::string("DROP INDEX ") + name);
  MakeSchema(store);
  for (const std::string& table : OldTables()) MoveRowsOf(store, table);
}

/// What the entries of the memory changed are changes of the new tables from now on. One that is
/// damaged stays as it is.
void WidenMemory(Store& store) {
  for (const Entry& entry : EntriesAfter(store, 0)) {
    if (!entry.changes) continue;
    try {
      ReplaceChanges(store, entry.number, Widened(store, *entry.changes));
    } catch (const Tovrin::Lib::Korel::KorelCtlException&) {
      continue;
    }
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
      std::fprintf(stderr, "note: the lab is brought up to date without %s.root/%s%s\n",
                   store.GetPath().c_str(), host.name.c_str(), path.c_str());
    }
  }
}

}  // namespace

std::string UpgradeSchema(Store& store) {
  const int noted = store.GetVersion();
  // Older programs marked a lab whose hosts had been replaced, and their files not yet.
  const bool hasNewHosts = noted < 0;
  const int version = hasNewHosts ? -noted : noted;
  if (version > kLastOldVersion) {
    throw UnusableLab(store.GetPath(), "the lab " + Quoted(store.GetPath()) +
                                           " is of the unknown version " + std::to_string(noted));
  }
  CheckSchema(store, SchemaOfVersion(version));
  if (version == 0) {
    MakeSchema(store);
    return {};
  }
  for (int from = version; from < kLastOldVersion; ++from) {
    RunScript(store, kOldMigrations.at(static_cast<std::size_t>(from)));
  }
  MoveRows(store);
  WidenMemory(store);
  if (version < kFirstVersionWithFiles) TakeFiles(store, !hasNewHosts);
  return "brings the lab up to date from version " + std::to_string(version);
}

}  // namespace lab
