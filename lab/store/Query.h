#pragma once

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/VariadicBind.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "lab/store/Store.h"

namespace lab {

/// A statement in use. Its rows come one by one: executeStep() goes to the next, the first
/// included, and is false after the last.
class Rows {
 public:
  template <typename... Values>
  Rows(Store& store, const char* sql, const Values&... values)
      : store_(store), statement_(store.Take(sql)) {
    SQLite::bind(*statement_, values...);
  }
  ~Rows() { store_.Keep(std::move(statement_)); }
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;

  bool executeStep() { return statement_->executeStep(); }
  int exec() { return statement_->exec(); }
  SQLite::Column getColumn(int index) { return statement_->getColumn(index); }
  bool isColumnNull(int index) const { return statement_->isColumnNull(index); }
  int getColumnCount() const { return statement_->getColumnCount(); }

 private:
  Store& store_;
  std::unique_ptr<SQLite::Statement> statement_;
};

/// A statement with its values bound in their order.
template <typename... Values>
Rows Query(Store& store, const char* sql, const Values&... values) {
  return Rows(store, sql, values...);
}

/// Runs a statement that answers no rows; returns how many rows it changed.
template <typename... Values>
int Execute(Store& store, const char* sql, const Values&... values) {
  return Query(store, sql, values...).exec();
}

/// Runs an INSERT; returns the id of the row.
template <typename... Values>
std::int64_t Insert(Store& store, const char* sql, const Values&... values) {
  Execute(store, sql, values...);
  return store.GetDatabase().getLastInsertRowid();
}

/// The first column of all rows.
template <typename... Values>
std::vector<std::string> Texts(Store& store, const char* sql, const Values&... values) {
  Rows rows = Query(store, sql, values...);
  std::vector<std::string> texts;
  while (rows.executeStep()) texts.push_back(rows.getColumn(0).getString());
  return texts;
}

/// There is at least one row.
template <typename... Values>
bool Exists(Store& store, const char* sql, const Values&... values) {
  return Query(store, sql, values...).executeStep();
}

}  // namespace lab
