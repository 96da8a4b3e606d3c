#include "lab/memory/TimeOfChange.h"

#include <algorithm>
#include <map>

#include "lab/base/Text.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"

namespace lab {
namespace {

std::string NameOf(const std::string& table, const Key& key) {
  std::string name = table;
  // A number or a text without NUL: the separator is in none of them.
  for (const std::string& part : key) name.append(1, '\0').append(part);
  return name;
}

std::size_t PlaceOf(const std::string& table, const std::string& column) {
  const auto& columns = ColumnsOf(table);
  return static_cast<std::size_t>(std::find(columns.begin(), columns.end(), column) -
                                  columns.begin());
}

const Value* FindValue(const std::vector<Value>& values, std::size_t place) {
  return values.empty() || !values[place].isKnown ? nullptr : &values[place];
}

std::optional<std::string> TextOf(const Value& value) {
  return value.isNull ? std::nullopt : std::optional(value.text);
}

/// The names that a table's own SQL begins its lines with.
std::vector<std::string> ReadColumns(const char* sql) {
  std::vector<std::string> columns;
  for (const std::string& line : Split(sql, '\n')) {
    const std::string name = line.substr(0, line.find(' ', 2));
    if (name.size() > 2 && name.starts_with("  ") && name[2] >= 'a' && name[2] <= 'z') {
      columns.push_back(name.substr(2));
    }
  }
  return columns;
}

}  // namespace

Key KeyOf(const RowChange& row) {
  const std::vector<Value>& values = row.before.empty() ? row.after : row.before;
  Key key;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (row.isKey[i]) key.push_back(values[i].text);
  }
  return key;
}

const std::vector<std::string>& ColumnsOf(const std::string& table) {
  static const auto& known = *new auto([] {
    std::map<std::string, std::vector<std::string>> all;
    for (const auto& [name, sql] : kTables) all.emplace(name, ReadColumns(sql));
    return all;
  }());
  return known.at(table);
}

TimeOfChange::TimeOfChange(Store& store, std::vector<RowChange> changes,
                           std::vector<RowChange> later)
    : store_(store), changes_(std::move(changes)), later_(std::move(later)) {
  for (const RowChange& row : changes_) changedRows_[NameOf(row.table, KeyOf(row))] = &row;
  for (const RowChange& row : later_) laterRows_[NameOf(row.table, KeyOf(row))] = &row;
}

std::optional<std::string> TimeOfChange::ValueOf(const std::string& table, const Key& key,
                                                 const std::string& column, Moment moment) const {
  const std::string name = NameOf(table, key);
  const std::size_t place = PlaceOf(table, column);
  if (const auto row = changedRows_.find(name); row != changedRows_.end()) {
    const auto& [unused, isKey, before, after] = *row->second;
    const bool isBefore = after.empty() || (moment == Moment::Before && !before.empty());
    const Value* value = FindValue(isBefore ? before : after, place);
    // The key of a changed row stands on one side alone.
    if (value == nullptr && isKey[place]) value = FindValue(before, place);
    if (value != nullptr) return TextOf(*value);
  }
  if (const auto row = laterRows_.find(name); row != laterRows_.end()) {
    if (row->second->before.empty()) return std::nullopt;
    if (const Value* value = FindValue(row->second->before, place)) return TextOf(*value);
  }
  return ValueNow(table, key, column);
}

std::optional<std::string> TimeOfChange::ValueNow(const std::string& table, const Key& key,
                                                  const std::string& column) const {
  // Only rows of one key are referred to; others are named by their keys or by what was changed.
  if (key.size() != 1) return std::nullopt;
  const std::string sql =
      "SELECT " + column + " FROM " + table + " WHERE " + ColumnsOf(table).front() + " = ?";
  Query row(store_, sql.c_str(), key.front());
  return row.Next() ? row.OptionalText(0) : std::nullopt;
}

}  // namespace lab
