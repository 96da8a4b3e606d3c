#include "fuzz/LabMutation.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <optional>
#include <utility>

#include "fuzz/Support.h"
#include "lab/store/LabFile.h"
#include "lab/store/OldSchema.h"
#include "lab/store/Schema.h"
#include "lab/store/SchemaCheck.h"

namespace fuzz {
namespace {

constexpr std::size_t kMostText = 100'000;

/// The file of a lab as a database in memory that checks nothing: no references, no types.
class LooseLab {
 public:
  explicit LooseLab(const std::string& file) : database_(Opened(file)) {
    try {
      SQLite::Statement rows(database_, "SELECT name, sql FROM sqlite_schema WHERE type = 'table'");
      while (rows.executeStep()) schema_.emplace_back(rows.getColumn(0), rows.getColumn(1));
      database_.exec(
          "UPDATE sqlite_schema SET sql = replace(replace(replace(sql, ' STRICT, ', ' '),"
          " ' STRICT', ''), ' NOT NULL', '')");
    } catch (const SQLite::Exception&) {
      return;
    }
    // Another connection reads it again.
    database_ = Opened(Bytes());
    for (const auto& [name, sql] : lab::kTables) tables_.emplace_back(name);
    tables_.insert(tables_.end(), {lab::kHistory.name, "sqlite_schema"});
  }

  /// Changes a row as the input says.
  void ChangeRow(Pieces& input) {
    if (tables_.empty()) return;
    const std::string& table = tables_[input.Below(tables_.size())];
    if (table == "sqlite_schema") Tighten();
    FindColumns(table);
    if (columns_.empty()) return;
    const std::size_t column = input.Below(columns_.size());
    const auto row = static_cast<std::int64_t>(input.Byte());
    const std::string where = " WHERE (" + key_ + ") IN (SELECT " + key_ + " FROM " + table +
                              " LIMIT 1 OFFSET :row % (SELECT count(*) FROM " + table + "))";
    const std::size_t kind = input.Below(8);
    if (kind == 0) return Change("DELETE FROM " + table + where, {}, row);
    const std::string value = kind == 1 ? columns_[column] : ValueFor(table, column, row, input);
    if (kind > 2) {
      return Change("UPDATE " + table + " SET " + columns_[column] + " = " + value + where, text_,
                    row);
    }
    std::string values;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      values += (i == 0 ? "" : ", ") + (i == column ? value : columns_[i]);
    }
    Change("INSERT OR REPLACE INTO " + table + " SELECT " + values + " FROM " + table + where,
           text_, row);
  }

  void SetHeader(Pieces& input) {
    static const std::vector<std::string> kSettings = {
        "user_version = ", "application_id = ", "schema_version = ", "page_size = "};
    const std::string setting = kSettings[input.Below(kSettings.size())];
    Try("PRAGMA " + setting + std::to_string(static_cast<std::int32_t>(input.Number(4))));
    if (setting.starts_with("page_size")) Try("VACUUM");
  }

  std::string File() {
    Tighten();
    return Bytes();
  }

 private:
  static SQLite::Database Opened(const std::string& file) {
    SQLite::Database database(":memory:", SQLite::OPEN_READWRITE);
    sqlite3* handle = database.getHandle();
    auto* bytes = static_cast<unsigned char*>(sqlite3_malloc64(file.size() + 1));
    std::memcpy(bytes, file.data(), file.size());
    const auto size = static_cast<sqlite3_int64>(file.size());
    sqlite3_deserialize(handle, "main", bytes, size, size,
                        SQLITE_DESERIALIZE_FREEONCLOSE | SQLITE_DESERIALIZE_RESIZEABLE);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_ENABLE_FKEY, 0, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_WRITABLE_SCHEMA, 1, nullptr);
    return database;
  }

  std::string Bytes() {
    sqlite3_int64 size = 0;
    unsigned char* bytes = sqlite3_serialize(database_.getHandle(), "main", &size, 0);
    std::string file(reinterpret_cast<char*>(bytes), bytes == nullptr ? 0 : size);
    sqlite3_free(bytes);
    return file;
  }

  /// The schema is again what it was. What this cannot do to a broken file is left.
  void Tighten() {
    if (isTight_) return;
    isTight_ = true;
    for (const auto& [name, sql] : schema_) {
      Change("UPDATE sqlite_schema SET sql = CAST(:value AS TEXT) WHERE name = '" + name + "'",
             sql);
    }
  }

  void FindColumns(const std::string& table) {
    columns_.clear();
    key_.clear();
    if (table == "sqlite_schema") {
      columns_ = {"type", "name", "tbl_name", "rootpage", "sql"};
      key_ = "rowid";
      return;
    }
    try {
      SQLite::Statement rows(database_, "SELECT name, pk FROM pragma_table_info(?)");
      rows.bind(1, table);
      while (rows.executeStep()) {
        columns_.push_back(rows.getColumn(0).getString());
        if (rows.getColumn(1).getInt() > 0) key_ += (key_.empty() ? "" : ", ") + columns_.back();
      }
    } catch (const SQLite::Exception&) {
      columns_.clear();
    }
  }

  /// An expression; its text, if it has one, is text_.
  std::string ValueFor(const std::string& table, std::size_t column, std::int64_t row,
                       Pieces& input) {
    text_.reset();
    switch (input.Below(7)) {
      case 0:
        return "NULL";
      case 1:
        return std::to_string(static_cast<std::int64_t>(input.Number(8)));
      case 2:
        return std::to_string(input.Below(256));
      case 3:
        return std::to_string(input.Below(256)) + ".5";
      case 4:
        text_ = input.Text();
        return input.Below(2) == 0 ? "CAST(:value AS TEXT)" : ":value";
      case 5: {
        const std::string piece = input.Text();
        const std::size_t count = piece.empty() ? 0 : input.Below(kMostText / piece.size());
        text_.emplace();
        for (std::size_t i = 0; i < count; ++i) *text_ += piece;
        return table == "history" || table == "files" ? ":value" : "CAST(:value AS TEXT)";
      }
      default:
        text_ = Spliced(table, column, row, input);
        return input.Below(2) == 0 ? "CAST(:value AS TEXT)" : ":value";
    }
  }

  /// The value that is there, with a piece of it replaced.
  std::string Spliced(const std::string& table, std::size_t column, std::int64_t row,
                      Pieces& input) {
    std::string value;
    try {
      SQLite::Statement read(database_,
                             "SELECT CAST(" + columns_[column] + " AS BLOB) FROM " + table +
                                 " LIMIT 1 OFFSET :row % (SELECT count(*) FROM " + table + ")");
      read.bind(1, row);
      if (read.executeStep()) value = read.getColumn(0).getString();
    } catch (const SQLite::Exception&) {
    }
    const std::size_t place = input.Below(value.size() + 1);
    const std::size_t length = input.Byte();
    return value.replace(place, length, input.Text());
  }

  /// `value` for :value and `row` for :row, where they stand.
  void Change(const std::string& sql, const std::optional<std::string>& value,
              std::int64_t row = 0) {
    try {
      SQLite::Statement statement(database_, sql);
      if (sql.find(":row") != std::string::npos) statement.bind(":row", row);
      if (value && sql.find(":value") != std::string::npos) {
        statement.bind(":value", value->data(), static_cast<int>(value->size()));
      }
      statement.exec();
    } catch (const SQLite::Exception&) {
      // Not every input is a change.
    }
  }

  void Try(const std::string& sql) { static_cast<void>(database_.tryExec(sql)); }

  SQLite::Database database_;
  std::vector<std::pair<std::string, std::string>> schema_;
  bool isTight_ = false;
  std::vector<std::string> tables_;
  std::vector<std::string> columns_;  ///< of the table that is changed
  std::string key_;                   ///< its key, as a list
  std::optional<std::string> text_;
};

void Patch(std::string& bytes, Pieces& input) {
  const std::size_t place = input.Below(bytes.size() + 1);
  const std::string text = input.Text();
  bytes.replace(place, std::min(text.size(), bytes.size() - place), text);
}

/// The record by which a journal of several files names the one that names them all.
std::string NameInJournal(const std::string& name) {
  const auto number = [](std::uint32_t value) {
    return std::string{static_cast<char>(value >> 24U), static_cast<char>(value >> 16U),
                       static_cast<char>(value >> 8U), static_cast<char>(value)};
  };
  const auto sum = std::accumulate(name.begin(), name.end(), std::uint32_t{0});
  return number(0x40000000 / 4096 + 1) + name + number(static_cast<std::uint32_t>(name.size())) +
         number(sum) + "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7";
}

std::string OldLab(int version, const std::string& path) {
  {
    SQLite::Database database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    database.exec(lab::OldSchemaScript(version));
    database.exec("PRAGMA user_version = " + std::to_string(version) +
                  "; PRAGMA application_id = " + std::to_string(lab::kApplicationId));
    database.exec(
        "INSERT INTO hosts (id, name, nodeUuid)"
        " VALUES (1, 'host1', '11111111-0000-4000-8000-000000000001');"
        "INSERT INTO interfaces (host, name" +
        std::string(version > 1 ? ", position) VALUES (1, 'hsk0', 0);" : ") VALUES (1, 'hsk0');") +
        "INSERT INTO devices (id, host, name, uuid, isFlash, isCapacityFlash, sizeGb, vendor, "
        "model) VALUES (1, 1, 's', '22222222-0000-4000-8000-000000000001', 0, 0, 400, '', ''),"
        " (2, 1, 'c', '22222222-0000-4000-8000-000000000002', 1, 0, 100, '', '')");
  }
  return ReadFile(path);
}

LabFiles InTransaction(const std::string& lab, const std::string& path) {
  WriteFile(path, lab);
  SQLite::Database database(path, SQLite::OPEN_READWRITE);
  database.exec(
      "BEGIN; UPDATE hosts SET resyncRate = 7; UPDATE history SET time = 7;"
      " UPDATE devices SET model = 'of an unfinished transaction'");
  sqlite3_db_cacheflush(database.getHandle());
  LabFiles files{ReadFile(path), ReadFile(path + "-journal")};
  database.exec("ROLLBACK");
  Require(!files.journal.empty() && files.lab != lab, "a transaction has a journal");
  return files;
}

}  // namespace

Pieces::Pieces(const std::uint8_t* data, std::size_t size)
    : rest_(reinterpret_cast<const char*>(data), size) {}

std::size_t Pieces::Byte() {
  if (rest_.empty()) return 0;
  const auto byte = static_cast<unsigned char>(rest_.front());
  rest_.remove_prefix(1);
  return byte;
}

std::uint64_t Pieces::Number(int bytes) {
  std::uint64_t number = 0;
  for (int i = 0; i < bytes; ++i) number = number << 8U | Byte();
  return number;
}

std::size_t Pieces::Below(std::size_t limit) { return (limit <= 256 ? Byte() : Number(3)) % limit; }

std::string Pieces::Text() {
  const std::size_t size = Byte();
  std::string text(rest_.substr(0, size));
  rest_.remove_prefix(text.size());
  return text;
}

std::vector<LabFiles> LabsToMutate(const std::string& current, const std::string& folder) {
  std::vector<LabFiles> labs{{current, ""}};
  for (int version = 1; version < lab::kSchemaVersion; ++version) {
    labs.push_back({OldLab(version, folder + "/old" + std::to_string(version)), ""});
  }
  labs.push_back(InTransaction(current, folder + "/unfinished"));
  return labs;
}

LabFiles Mutated(const std::vector<LabFiles>& labs, Pieces& input, const std::string& victim) {
  LabFiles files = labs[input.Below(labs.size())];
  std::optional<LooseLab> loose;
  const auto settle = [&] {
    if (loose) files.lab = loose->File();
    loose.reset();
  };
  for (std::size_t count = 1 + input.Below(8); count > 0 && !input.IsEmpty(); --count) {
    const std::size_t kind = input.Below(8);
    if (kind < 4) settle();
    switch (kind) {
      case 0:
        Patch(files.lab, input);
        break;
      case 1:
        Patch(files.journal, input);
        break;
      case 2:
        files.lab.resize(input.Below(files.lab.size() + 1));
        break;
      case 3:
        files.journal += NameInJournal(victim);
        break;
      default:
        if (!loose) loose.emplace(files.lab);
        kind == 7 ? loose->SetHeader(input) : loose->ChangeRow(input);
    }
  }
  settle();
  return files;
}

}  // namespace fuzz
