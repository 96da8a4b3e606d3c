#include <string_view>

#include "lab/base/Text.h"
#include "lab/store/Changeset.h"
#include "lab/store/Query.h"
#include "lab/store/Session.h"

namespace lab {
namespace {

[[noreturn]] void FailDamaged() { Fail("the memory of the lab is damaged"); }

/// The bytes of an integer in the extension's format.
std::string Integer(std::int64_t value) {
  std::string bytes(1, SQLITE_INTEGER);
  for (int shift = 56; shift >= 0; shift -= 8) {
    bytes += static_cast<char>(static_cast<std::uint64_t>(value) >> static_cast<unsigned>(shift));
  }
  return bytes;
}

/// What a schema says of a column's default, an integer, a short text or nothing, in that format.
std::string Default(Store& store, const Row& column) {
  if (column.IsNull(1)) return std::string(1, SQLITE_NULL);
  Query value(store, ("SELECT typeof(" + column.Text(1) + "), " + column.Text(1)).c_str());
  value.Next();
  if (value.Text(0) == "integer") return Integer(value.Number(1));
  const std::string text = value.Text(1);
  if (value.Text(0) != "text" || text.size() > 0x7f) FailDamaged();
  return std::string(1, SQLITE3_TEXT) + static_cast<char>(text.size()) + text;
}

/// Copies a changeset and puts in what its tables have got since.
class Widener {
 public:
  Widener(Store& store, std::string_view bytes) : store_(store), rest_(bytes) {}

  Changeset Run() {
    while (!rest_.empty()) {
      if (rest_.front() == 'T') {
        Table();
      } else {
        Change();
      }
    }
    return std::move(out_);
  }

 private:
  std::string_view Take(std::size_t size) {
    if (size > rest_.size()) FailDamaged();
    const std::string_view bytes = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return bytes;
  }

  unsigned char Copy() {
    out_ += Take(1);
    return static_cast<unsigned char>(out_.back());
  }

  void Table() {
    Take(1);
    count_ = static_cast<unsigned char>(Take(1).front());
    const std::string keys(Take(count_));
    const std::string name(rest_.substr(0, rest_.find('\0')));
    Take(name.size() + 1);
    std::size_t columns = 0;
    defaults_.clear();
    for (const Row& column :
         Query(store_, "SELECT cid, dflt_value FROM pragma_table_info(?)", name)) {
      if (++columns > count_) defaults_ += Default(store_, column);
    }
    if (columns < count_ || columns > 0x7f) FailDamaged();
    unknown_.assign(columns - count_, '\0');
    out_ += 'T';
    out_ += static_cast<char>(columns);
    // None of the new ones is part of a key.
    out_ += keys + unknown_ + name + '\0';
  }

  void Change() {
    const int kind = Copy();
    Copy();
    if (kind != SQLITE_INSERT) CopyValues(kind == SQLITE_DELETE);
    if (kind != SQLITE_DELETE) CopyValues(kind == SQLITE_INSERT);
  }

  void CopyValues(bool isWholeRow) {
    for (std::size_t i = 0; i < count_; ++i) {
      const int type = Copy();
      if (type == SQLITE_INTEGER) out_ += Take(8);
      if (type == SQLITE_TEXT || type == SQLITE_BLOB) CopyText();
    }
    out_ += isWholeRow ? defaults_ : unknown_;
  }

  void CopyText() {
    std::size_t length = 0;
    for (int i = 0; i < 4; ++i) {
      const unsigned byte = Copy();
      length = length << 7U | (byte & 0x7fU);
      if (byte >= 0x80) continue;
      out_ += Take(length);
      return;
    }
    FailDamaged();
  }

  Store& store_;
  std::string_view rest_;
  std::string out_;
  std::size_t count_ = 0;  ///< of the columns that the table had
  std::string defaults_;   ///< of those that it has got
  std::string unknown_;    ///< the same of a change that says nothing of them
};

}  // namespace

Changeset Widened(Store& store, const Changeset& changes) { return Widener(store, changes).Run(); }

}  // namespace lab
