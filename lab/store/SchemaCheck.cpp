#include "lab/store/SchemaCheck.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <algorithm>
#include <string_view>

#include "lab/base/Text.h"
#include "lab/store/LabFile.h"
#include "lab/store/OldSchema.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"

namespace lab {
namespace {

constexpr const char* kSelect = "SELECT type, name, sql FROM sqlite_schema WHERE sql IS NOT NULL";

[[noreturn]] void Refuse(const Store& store, const std::string& what) {
  throw UnusableLab(store.GetPath(), "the lab " + Quoted(store.GetPath()) + " " + what);
}

}  // namespace

const SchemaTexts& CurrentSchema() {
  static const auto& schema = *new SchemaTexts([] {
    SchemaTexts texts{{kHistory.name, kHistory.sql}};
    for (const auto& [name, sql] : kTables) texts.emplace(name, sql);
    for (const auto& [name, sql] : kIndexes) texts.emplace(name, sql);
    return texts;
  }());
  return schema;
}

SchemaTexts SchemaOfVersion(int version) {
  // As the file keeps it after all its changes: SQLite knows best.
  SQLite::Database scratch(":memory:", SQLite::OPEN_READWRITE);
  scratch.exec(ScriptOfVersion(version));
  SchemaTexts schema;
  SQLite::Statement rows(scratch, kSelect);
  while (rows.executeStep()) {
    schema.emplace(rows.getColumn(1).getString(), rows.getColumn(2).getString());
  }
  return schema;
}

std::string ScriptOfVersion(int version) {
  std::string script;
  if (version <= static_cast<int>(kOldMigrations.size())) {
    for (int from = 0; from < version; ++from) {
      script += kOldMigrations.at(static_cast<std::size_t>(from));
    }
    return script;
  }
  const auto add = [&](const SchemaObject& object) {
    const auto* other = std::find_if(
        kOtherInVersion4.begin(), kOtherInVersion4.end(),
        [&](const SchemaObject& each) { return std::string_view(each.name) == object.name; });
    const char* sql = other == kOtherInVersion4.end() ? object.sql : other->sql;
    if (sql != nullptr) script += std::string(sql) + ";";
  };
  for (const SchemaObject& table : kTables) add(table);
  add(kHistory);
  for (const SchemaObject& index : kIndexes) add(index);
  return script;
}

void CheckSchema(Store& store, const SchemaTexts& schema) {
  std::size_t known = 0;
  for (const Row& row : Query(store, kSelect)) {
    const std::string kind = row.Text(0) + " ";
    const std::string name = row.Text(1);
    const auto own = schema.find(name);
    if (own == schema.end()) Refuse(store, "holds a " + kind + Quoted(name) + " that no lab has");
    if (own->second != row.Text(2)) {
      Refuse(store, "has another " + kind + Quoted(name) + " than a lab of its version");
    }
    ++known;
  }
  if (known == schema.size()) return;
  for (const auto& [name, sql] : schema) {
    if (!Exists(store, "SELECT 1 FROM sqlite_schema WHERE name = ?", name)) {
      Refuse(store, "lacks the table " + Quoted(name));
    }
  }
}

void MakeSchema(Store& store) {
  for (const auto& [name, sql] : kTables) store.GetDatabase().exec(sql);
  store.GetDatabase().exec(kHistory.sql);
  for (const auto& [name, sql] : kIndexes) store.GetDatabase().exec(sql);
  store.GetDatabase().exec("PRAGMA application_id = " + std::to_string(kApplicationId));
  store.GetDatabase().exec("PRAGMA user_version = " + std::to_string(kSchemaVersion));
}

}  // namespace lab
