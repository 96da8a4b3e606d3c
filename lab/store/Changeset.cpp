#include "lab/store/Changeset.h"

#include <SQLiteCpp/Database.h>

#include <algorithm>
#include <memory>
#include <string_view>

#include "lab/base/Text.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"
#include "lab/store/Session.h"

namespace lab {
namespace {

[[noreturn]] void FailDamaged() { Fail("the memory of the lab is damaged"); }

/// Which columns of the table are its key; none when the lab has no such table.
std::vector<bool> KeysOf(Store& store, const std::string& table) {
  std::vector<bool> keys;
  const bool isOwn = std::any_of(kTables.begin(), kTables.end(),
                                 [&](const SchemaObject& own) { return own.name == table; });
  if (!isOwn) return keys;
  for (const Row& row : Query(store, "SELECT pk > 0 FROM pragma_table_info(?)", table))
    keys.push_back(row.Flag(0));
  return keys;
}

/// Reads the extension's format, of which its own functions trust each byte: some that no session
/// wrote keep them busy for ever. Everything here is held against the lab's own tables first.
class Reader {
 public:
  Reader(Store& store, std::string_view bytes) : store_(store), rest_(bytes) {}

  /// The next row; false at the end.
  bool Next(RowChange& row) {
    while (!rest_.empty() && rest_.front() == 'T') ReadTable();
    if (rest_.empty()) return false;
    const int kind = Byte();
    const int isIndirect = Byte();
    const bool isKnown = kind == SQLITE_INSERT || kind == SQLITE_DELETE || kind == SQLITE_UPDATE;
    if (!isKnown || isIndirect > 1 || keys_.empty()) FailDamaged();
    row = {table_, keys_, {}, {}};
    if (kind != SQLITE_INSERT) row.before = ReadValues();
    if (kind != SQLITE_DELETE) row.after = ReadValues();
    if (!IsWhole(row)) FailDamaged();
    return true;
  }

 private:
  static bool IsWhole(const RowChange& row) {
    const bool isUpdate = !row.before.empty() && !row.after.empty();
    for (std::size_t i = 0; i < row.isKey.size(); ++i) {
      const bool before = !row.before.empty() && row.before[i].isKnown;
      const bool after = !row.after.empty() && row.after[i].isKnown;
      const bool isRight = !isUpdate      ? before != after
                           : row.isKey[i] ? before && !after
                                          : before == after;
      if (!isRight) return false;
    }
    return true;
  }

  int Byte() { return static_cast<unsigned char>(Bytes(1).front()); }

  std::string_view Bytes(std::size_t size) {
    if (size > rest_.size()) FailDamaged();
    const std::string_view bytes = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return bytes;
  }

  /// Seven bits a byte; no length of a lab's takes more than four of these.
  std::size_t Length() {
    std::size_t length = 0;
    for (int i = 0; i < 4; ++i) {
      const auto byte = static_cast<unsigned>(Byte());
      length = length << 7U | (byte & 0x7fU);
      if (byte < 0x80) return length;
    }
    FailDamaged();
  }

  std::int64_t Integer() {
    std::uint64_t value = 0;
    for (const char byte : Bytes(8)) value = value << 8U | static_cast<unsigned char>(byte);
    return static_cast<std::int64_t>(value);
  }

  void ReadTable() {
    Bytes(1);
    const std::string_view keys = Bytes(Length());
    table_ = rest_.substr(0, rest_.find('\0'));
    Bytes(table_.size() + 1);
    keys_ = KeysOf(store_, table_);
    const bool isRight = std::equal(keys.begin(), keys.end(), keys_.begin(), keys_.end(),
                                    [](char given, bool isKey) { return (given != 0) == isKey; });
    if (keys_.empty() || !isRight) {
      Fail("the memory of the lab is damaged: it has changes of a table ", Quoted(table_),
           " that is none of a lab's");
    }
  }

  std::vector<Value> ReadValues() {
    constexpr int kUnknown = 0;
    std::vector<Value> values(keys_.size());
    for (Value& value : values) {
      const int type = Byte();
      value.isKnown = type != kUnknown;
      value.isNull = type == SQLITE_NULL;
      if (type == SQLITE_INTEGER) value.text = std::to_string(Integer());
      if (type == SQLITE_TEXT || type == SQLITE_BLOB) value.text = Bytes(Length());
      if (type == SQLITE_FLOAT || type > SQLITE_NULL) FailDamaged();
    }
    return values;
  }

  Store& store_;
  std::string_view rest_;
  std::string table_;
  std::vector<bool> keys_;
};

/// Any row that is not as the changes expect it stops them.
int Stop(void*, int, sqlite3_changeset_iter*) { return SQLITE_CHANGESET_ABORT; }

}  // namespace

std::vector<RowChange> RowsOf(Store& store, const Changeset& changes) {
  std::vector<RowChange> rows;
  Reader reader(store, changes);
  for (RowChange row; reader.Next(row);) rows.push_back(std::move(row));
  return rows;
}

std::int64_t CountRows(Store& store, const Changeset& changes) {
  std::int64_t count = 0;
  Reader reader(store, changes);
  for (RowChange row; reader.Next(row);) ++count;
  return count;
}

Changeset Combined(Store& store, const std::vector<Changeset>& changes) {
  sqlite3_changegroup* made = nullptr;
  CheckResult(sqlite3changegroup_new(&made));
  const std::unique_ptr<sqlite3_changegroup, decltype(&sqlite3changegroup_delete)> group(
      made, sqlite3changegroup_delete);
  for (const Changeset& one : changes) {
    CountRows(store, one);
    CheckResult(sqlite3changegroup_add(group.get(), static_cast<int>(one.size()),
                                       const_cast<char*>(one.data())));  // NOLINT
  }
  int size = 0;
  void* bytes = nullptr;
  const int result = sqlite3changegroup_output(group.get(), &size, &bytes);
  return TakeChangeset(result, size, bytes);
}

Changeset Inverted(Store& store, const Changeset& changes) {
  CountRows(store, changes);
  int size = 0;
  void* bytes = nullptr;
  const int result =
      sqlite3changeset_invert(static_cast<int>(changes.size()), changes.data(), &size, &bytes);
  return TakeChangeset(result, size, bytes);
}

bool Apply(Store& store, const Changeset& changes) {
  CountRows(store, changes);
  const int result =
      sqlite3changeset_apply(store.GetDatabase().getHandle(), static_cast<int>(changes.size()),
                             const_cast<char*>(changes.data()), nullptr, Stop, nullptr);  // NOLINT
  if (result == SQLITE_ABORT) return false;
  CheckResult(result);
  return true;
}

}  // namespace lab
