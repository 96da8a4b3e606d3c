// What changing the lab costs without us: open the file, and run a script of transactions.
#include <sqlite3.h>

#include <fstream>
#include <iostream>
#include <iterator>

int main(int argc, char** argv) {
  sqlite3* database = nullptr;
  std::ifstream file(argc == 3 ? argv[2] : "");
  const std::string script((std::istreambuf_iterator<char>(file)), {});
  if (script.empty() ||
      sqlite3_open_v2(argv[1], &database, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK ||
      sqlite3_exec(database, script.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
    std::cerr << "bench_bare_writer: " << sqlite3_errmsg(database) << "\n";
    return 1;
  }
  sqlite3_close(database);
}
