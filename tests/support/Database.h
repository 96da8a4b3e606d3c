#pragma once

#include <string>

/// A lab's file as any other program sees it that has the library.
namespace test {

/// Runs the statements, in a new file if there is none, without the care that a lab takes.
void RunSql(const std::string& file, const std::string& sql);

/// All rows, table by table, but those of the tables `apart`, which are quoted: equal states are
/// equal texts.
std::string RowsOf(const std::string& file, const std::string& apart);

}  // namespace test
