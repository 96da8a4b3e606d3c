// What reading the lab costs without us: open the file, one select, print.
#include <sqlite3.h>

#include <iostream>

int main(int argc, char** argv) {
  sqlite3* database = nullptr;
  sqlite3_stmt* select = nullptr;
  if (argc != 2 || sqlite3_open_v2(argv[1], &database, SQLITE_OPEN_READWRITE, nullptr) != 0 ||
      sqlite3_prepare_v2(database, "SELECT uuid, name FROM datastores", -1, &select, nullptr) !=
          0) {
    std::cerr << "bench_bare_reader: " << sqlite3_errmsg(database) << "\n";
    return 1;
  }
  while (sqlite3_step(select) == SQLITE_ROW) {
    std::cout << sqlite3_column_text(select, 0) << " " << sqlite3_column_text(select, 1) << "\n";
  }
  sqlite3_finalize(select);
  sqlite3_close(database);
}
