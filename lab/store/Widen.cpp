#include "lab/store/Widen.h"

#include <string_view>
#include <vector>

#include "lab/base/Text.h"
#include "lab/store/Query.h"
#include "lab/store/Session.h"

namespace lab {
namespace {

constexpr char kUnknown = '\0';

/// A column that older labs did not have: its place in the key, and its default as a changeset has
/// it.
struct AddedColumn {
  char keyPlace = 0;
  std::string value;
};

std::string ValueOf(const std::optional<std::string>& sql) {
  if (!sql) return {static_cast<char>(SQLITE_NULL)};
  if (sql->starts_with('\'')) {
    const std::string text = sql->substr(1, sql->size() - 2);
    return std::string{static_cast<char>(SQLITE_TEXT), static_cast<char>(text.size())} + text;
  }
  const auto number = static_cast<std::uint64_t>(ParseNumber(*sql).value_or(0));
  std::string value{static_cast<char>(SQLITE_INTEGER)};
  for (unsigned shift = 64; shift > 0; shift -= 8) {
    value += static_cast<char>(number >> (shift - 8) & 0xffU);
  }
  return value;
}

class Widener {
 public:
  Widener(Store& store, std::string_view changes) : store_(store), rest_(changes) {}

  Changeset Widen() {
    while (!rest_.empty()) {
      if (rest_.front() == 'T') {
        WidenTable();
      } else {
        WidenRow();
      }
    }
    return std::move(widened_);
  }

 private:
  std::string_view Take(std::size_t size) {
    if (size > rest_.size()) Fail("the memory of the lab is damaged");
    const std::string_view bytes = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return bytes;
  }
  int Byte() { return static_cast<unsigned char>(Take(1).front()); }
  std::string_view Copy(std::size_t size) {
    const std::string_view bytes = Take(size);
    widened_ += bytes;
    return bytes;
  }

  void WidenTable() {
    Copy(1);
    count_ = static_cast<std::size_t>(Byte());
    const std::string_view keys = Take(count_);
    const std::string table(rest_.substr(0, rest_.find('\0')));
    added_.clear();
    std::size_t column = 0;
    for (const Row& row : Query(store_, "SELECT pk, dflt_value FROM pragma_table_info(?)", table)) {
      if (++column <= count_) continue;
      added_.push_back({static_cast<char>(row.Number(0)), ValueOf(row.OptionalText(1))});
    }
    widened_ += static_cast<char>(count_ + added_.size());
    widened_ += keys;
    for (const AddedColumn& each : added_) widened_ += each.keyPlace;
    Copy(table.size() + 1);
  }

  void WidenRow() {
    const int kind = static_cast<unsigned char>(Copy(2).front());
    const bool isChange = kind == SQLITE_UPDATE;
    CopyValues();
    for (const AddedColumn& each : added_) {
      // The key of a changed row stands on one side alone.
      if (isChange && each.keyPlace == 0) {
        widened_ += kUnknown;
      } else {
        widened_ += each.value;
      }
    }
    if (!isChange) return;
    CopyValues();
    widened_.append(added_.size(), kUnknown);
  }

  void CopyValues() {
    for (std::size_t i = 0; i < count_; ++i) {
      const int type = static_cast<unsigned char>(Copy(1).front());
      if (type == SQLITE_INTEGER || type == SQLITE_FLOAT) Copy(8);
      if (type == SQLITE_TEXT || type == SQLITE_BLOB) CopyBytes();
    }
  }

  void CopyBytes() {
    std::size_t length = 0;
    unsigned byte = 0;
    do {
      byte = static_cast<unsigned char>(Copy(1).front());
      length = length << 7U | (byte & 0x7fU);
    } while (byte >= 0x80 && length <= rest_.size());
    Copy(length);
  }

  Store& store_;
  std::string_view rest_;
  Changeset widened_;
  std::size_t count_ = 0;
  std::vector<AddedColumn> added_;
};

}  // namespace

Changeset Widened(Store& store, const Changeset& changes) {
  return Widener(store, changes).Widen();
}

}  // namespace lab
