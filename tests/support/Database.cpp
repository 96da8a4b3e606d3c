#include "tests/support/Database.h"

#include <SQLiteCpp/SQLiteCpp.h>

namespace test {

void RunSql(const std::string& file, const std::string& sql) {
  SQLite::Database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(sql);
}

std::string RowsOf(const std::string& file, const std::string& apart) {
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
