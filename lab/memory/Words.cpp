#include "lab/memory/Words.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>

#include "lab/base/Text.h"
#include "lab/memory/TextOfColumn.h"
#include "lab/memory/TimeOfChange.h"

namespace lab {
namespace {

/// What a row of the table is to people, and the columns that name it, the last being what it
/// belongs to when there are several.
struct TableText {
  const char* table;
  const char* kind;
  const char* names;
};

constexpr auto kTableTexts = std::to_array<TableText>({
    {"hosts", "host", "name"},
    {"interfaces", "interface", "name,host"},
    {"devices", "device", "name,host"},
    {"claims", "claimed device", "device"},
    {"clusters", "cluster", "uuid"},
    {"memberships", "membership", "host,cluster"},
    {"datastores", "datastore", "name"},
    {"mounts", "mounted datastore", "name,cluster"},
    {"agents", "unicast agent", "type,address,host"},
    {"networkConfigs", "network configuration", "interface,host"},
    {"policies", "default policy", "class,host"},
    {"traceOptions", "trace option", "name,host"},
    {"files", "file", "path,host"},
    {"features", "feature", "name"},
    {"faults", "injected failure", "operation"},
});

const TableText& TextOfTable(const std::string& table) {
  return *std::find_if(kTableTexts.begin(), kTableTexts.end(),
                       [&](const TableText& each) { return each.table == table; });
}

/// A line of a file as a field: its title, and what it says.
struct Line {
  std::string title;
  std::string text;
};

/// The lines of a file, of which there may be as many as bytes: each is found by its title.
class LinesOf {
 public:
  explicit LinesOf(const std::string& content) {
    std::unordered_map<std::string, int> counts;
    for (const std::string& line : Lines(content)) {
      const std::size_t equals = line.find('=');
      const bool isSetting = equals != std::string::npos;
      std::string title =
          isSetting ? line.substr(0, equals) : "line " + std::to_string(lines_.size() + 1);
      if (const int count = ++counts[title]; count > 1) title += " (" + std::to_string(count) + ")";
      lines_.push_back({std::move(title), isSetting ? line.substr(equals + 1) : line});
    }
    for (const Line& line : lines_) texts_.emplace(line.title, line.text);
  }

  const std::vector<Line>& GetAll() const { return lines_; }

  std::optional<std::string> TextOf(const std::string& title) const {
    const auto line = texts_.find(title);
    return line == texts_.end() ? std::nullopt : std::optional(std::string(line->second));
  }

 private:
  std::vector<Line> lines_;
  std::unordered_map<std::string_view, std::string_view> texts_;
};

/// Tells the changes of one row.
class RowTeller {
 public:
  RowTeller(const TimeOfChange& time, const RowChange& row, std::vector<FieldChange>& changes)
      : time_(time), row_(row), changes_(changes), text_(TextOfTable(row.table)) {
    names_ = Split(text_.names, ',');
    kind_ = row.before.empty() ? "added" : row.after.empty() ? "removed" : "changed";
    subject_ = Subject();
  }

  void Tell() {
    const auto first = changes_.size();
    const std::vector<std::string>& columns = ColumnsOf(row_.table);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      const bool isNamed = std::find(names_.begin(), names_.end(), columns[i]) != names_.end();
      // The key of a changed row stands on one side alone.
      if (columns[i] == "id" || (IsWhole() ? isNamed : row_.isKey[i])) continue;
      const auto before = ValueAt(row_.before, i);
      const auto after = ValueAt(row_.after, i);
      if (columns[i] == "content") {
        TellLines(before, after);
      } else {
        Add(TitleOf(columns[i]), Word(columns[i], before, Moment::Before),
            Word(columns[i], after, Moment::After));
      }
    }
    if (IsWhole() && changes_.size() == first) changes_.push_back({kind_, subject_, {}, {}, {}});
  }

 private:
  bool IsWhole() const { return row_.before.empty() || row_.after.empty(); }

  static std::optional<std::string> ValueAt(const std::vector<Value>& values, std::size_t i) {
    if (values.empty() || !values[i].isKnown || values[i].isNull) return std::nullopt;
    return values[i].text;
  }

  std::optional<std::string> Word(const std::string& column,
                                  const std::optional<std::string>& value, Moment moment) const {
    if (!value) return std::nullopt;
    return WordFor(time_, row_.table, column, *value, moment);
  }

  std::string Subject() const {
    const Moment moment = row_.before.empty() ? Moment::After : Moment::Before;
    std::string subject = text_.kind;
    for (const std::string& name : names_) {
      const bool isOwner = names_.size() > 1 && &name == &names_.back();
      const auto value = time_.ValueOf(row_.table, KeyOf(row_), name, moment);
      subject += isOwner ? " of " : " ";
      subject += Word(name, value, moment).value_or("?");
    }
    return subject;
  }

  void TellLines(const std::optional<std::string>& before,
                 const std::optional<std::string>& after) {
    const LinesOf old(before.value_or(""));
    const LinesOf now(after.value_or(""));
    for (const auto& [title, text] : old.GetAll()) Add(title, text, now.TextOf(title));
    for (const auto& [title, text] : now.GetAll()) {
      if (!old.TextOf(title)) Add(title, std::nullopt, text);
    }
  }

  void Add(const std::string& title, std::optional<std::string> before,
           std::optional<std::string> after) {
    // Of a whole row what is empty says nothing.
    if (IsWhole() && before.value_or("").empty() && after.value_or("").empty()) return;
    if (before == after) return;
    changes_.push_back({kind_, subject_, title, std::move(before), std::move(after)});
  }

  const TimeOfChange& time_;
  const RowChange& row_;
  std::vector<FieldChange>& changes_;
  const TableText& text_;
  std::vector<std::string> names_;
  const char* kind_;
  std::string subject_;
};

/// Tables as the schema lists them, rows by their keys: the extension keeps no order.
bool Precedes(const RowChange& one, const RowChange& other) {
  const auto place = [](const RowChange& row) { return &TextOfTable(row.table); };
  if (place(one) != place(other)) return place(one) < place(other);
  const auto key = KeyOf(one);
  const auto otherKey = KeyOf(other);
  for (std::size_t i = 0; i < key.size(); ++i) {
    const auto number = ParseNumber(key[i]);
    const auto otherNumber = ParseNumber(otherKey[i]);
    if (number && otherNumber && *number != *otherNumber) return *number < *otherNumber;
    if (key[i] != otherKey[i]) return key[i] < otherKey[i];
  }
  return false;
}

}  // namespace

std::vector<FieldChange> InWords(Store& store, const Changeset& changes, const Changeset& later) {
  const TimeOfChange time(store, RowsOf(store, changes), RowsOf(store, later));
  std::vector<const RowChange*> rows;
  for (const RowChange& row : time.GetRows()) rows.push_back(&row);
  std::sort(rows.begin(), rows.end(),
            [](const RowChange* one, const RowChange* other) { return Precedes(*one, *other); });
  std::stable_partition(rows.begin(), rows.end(),
                        [](const RowChange* row) { return !row->before.empty(); });
  std::vector<FieldChange> told;
  for (const RowChange* row : rows) RowTeller(time, *row, told).Tell();
  return told;
}

}  // namespace lab
