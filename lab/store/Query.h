#pragma once

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/VariadicBind.h>

#include <cstdint>
#include <string>
#include <vector>

#include "lab/store/Store.h"

namespace lab {

/// A statement with its values bound in their order.
template <typename... Values>
SQLite::Statement Query(Store& store, const char* sql, const Values&... values) {
  SQLite::Statement statement(store.GetDatabase(), sql);
  SQLite::bind(statement, values...);
  return statement;
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
  SQLite::Statement rows = Query(store, sql, values...);
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
