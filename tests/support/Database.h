#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <string>

/// A lab's file as any other program sees it that has the library.
namespace test {

/// Runs the statements, in a new file if there is none, without the care that a lab takes.
inline void RunSql(const std::string& file, const std::string& sql) {
  SQLite::Database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(sql);
}

/// All rows, table by table, but those of the tables `apart`, which are quoted: equal states are
/// equal texts.
inline std::string RowsOf(const std::string& file, const std::string& apart) {
  SQLite::Database database(file);
  SQLite::Statement tables(
      database, "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT IN (" + apart +
                    ") ORDER BY name");
  std::string state;
  while (tables.executeStep()) {
    const std::string table = tables.getColumn(0).getString();
    state += table + "\n";
    SQLite::Statement rows(database, "SELECT * FROM " + table);
    while (rows.executeStep()) {
      for (int i = 0; i < rows.getColumnCount(); ++i) state += "|" + rows.getColumn(i).getString();
      state += "\n";
    }
  }
  return state;
}

}  // namespace test
