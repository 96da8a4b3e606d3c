#include "tests/support/Database.h"

#include <SQLiteCpp/SQLiteCpp.h>

namespace test {

void RunSql(const std::string& file, const std::string& sql) {
  SQLite::Database(file, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(sql);
}

std::vector<std::vector<std::string>> RowsOf(const std::string& file, const std::string& sql) {
  SQLite::Database database(file);
  SQLite::Statement statement(database, sql);
  std::vector<std::vector<std::string>> rows;
  while (statement.executeStep()) {
    rows.emplace_back();
    for (int i = 0; i < statement.getColumnCount(); ++i) {
      rows.back().push_back(statement.getColumn(i).getString());
    }
  }
  return rows;
}

}  // namespace test
