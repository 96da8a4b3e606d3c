#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "lab/store/Store.h"

namespace lab {

/// The row at which a statement stands. Columns count from 0. A column that it does not have, or
/// no row at all, makes ThrowActionable() say that the lab cannot be used.
class Row {
 public:
  /// The bytes, or a number's digits; empty for NULL.
  std::string Text(int column) const;
  /// 0 for NULL.
  std::int64_t Number(int column) const;
  /// The number is not 0.
  bool Flag(int column) const;
  bool IsNull(int column) const;
  /// Nothing for NULL.
  std::optional<std::string> OptionalText(int column) const;
  std::optional<std::int64_t> OptionalNumber(int column) const;
  int ColumnCount() const;

 protected:
  explicit Row(std::unique_ptr<SQLite::Statement> statement);
  ~Row();
  Row(const Row&) = delete;
  Row& operator=(const Row&) = delete;

  std::unique_ptr<SQLite::Statement> statement_;
};

/// A statement with its values, numbers and texts, bound in their order. Its rows come one by one:
///   for (const Row& row : Query(store, "SELECT name FROM hosts WHERE id > ?", 3)) row.Text(0);
/// and it is itself the row that came last.
class Query : public Row {
 public:
  template <typename... Values>
  Query(Store& store, const char* sql, const Values&... values) : Query(store, sql) {
    int place = 0;
    (Bind(++place, values), ...);
  }
  Query(Store& store, const char* sql);
  ~Query();

  /// Goes to the next row, the first included; false after the last.
  bool Next();

  class Iterator {
   public:
    explicit Iterator(Query& query) : query_(query), hasRow_(query.Next()) {}

    const Row& operator*() const { return query_; }
    Iterator& operator++() {
      hasRow_ = query_.Next();
      return *this;
    }
    bool operator!=(std::nullptr_t) const { return hasRow_; }

   private:
    Query& query_;
    bool hasRow_;
  };
  Iterator begin() { return Iterator(*this); }
  std::nullptr_t end() const { return nullptr; }

  /// Runs a statement that answers no rows; returns how many rows it changed.
  int Run();
  /// Runs an INSERT; returns the id of the row.
  std::int64_t RunInsert();

 private:
  void Bind(int place, std::int64_t number);
  void Bind(int place, const std::string& text);

  Store& store_;
};

/// Runs a statement that answers no rows; returns how many rows it changed.
template <typename... Values>
int Execute(Store& store, const char* sql, const Values&... values) {
  return Query(store, sql, values...).Run();
}

/// Runs an INSERT; returns the id of the row.
template <typename... Values>
std::int64_t Insert(Store& store, const char* sql, const Values&... values) {
  return Query(store, sql, values...).RunInsert();
}

/// Runs statements without values, which will not be needed again.
void RunScript(Store& store, const std::string& sql);

/// The first column of all rows.
template <typename... Values>
std::vector<std::string> Texts(Store& store, const char* sql, const Values&... values) {
  std::vector<std::string> texts;
  for (const Row& row : Query(store, sql, values...)) texts.push_back(row.Text(0));
  return texts;
}

/// There is at least one row.
template <typename... Values>
bool Exists(Store& store, const char* sql, const Values&... values) {
  return Query(store, sql, values...).Next();
}

}  // namespace lab
