#include "lab/model/Upgrade.h"

#include <cstdio>
#include <string_view>

#include "lab/base/Text.h"
#include "lab/model/OldFiles.h"
#include "lab/model/TraceDaemon.h"
#include "lab/store/LabFile.h"
#include "lab/store/OldSchema.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"
#include "lab/store/SchemaCheck.h"

namespace lab {
namespace {

constexpr int kLastOldVersion = static_cast<int>(kOldMigrations.size());
static_assert(kLastOldVersion + 1 == kSchemaVersion);

/// Makes every table from scratch and moves the rows, so that the file holds what a new one would.
void MoveRows(Store& store) {
  const auto isNew = [](std::string_view table) { return table == "files"; };
  // Or other tables' references would follow.
  RunScript(store, "PRAGMA legacy_alter_table = ON");
  for (const auto& [name, sql] : kTables) {
    const std::string table = name;
    if (!isNew(table)) RunScript(store, "ALTER TABLE " + table + " RENAME TO old_" + table);
  }
  RunScript(store, "PRAGMA legacy_alter_table = OFF");
  MakeSchema(store);
  for (const auto& [name, sql] : kTables) {
    const std::string table = name;
    if (isNew(table)) continue;
    const std::string added = table == "hosts" ? ", 1, NULL, NULL" : "";
    RunScript(store, "INSERT INTO " + table + " SELECT *" + added + " FROM old_" + table);
    RunScript(store, "DROP TABLE old_" + table);
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
  TakeFiles(store, !hasNewHosts);
  return "brings the lab up to date from version " + std::to_string(version);
}

}  // namespace lab
