#pragma once

#include <string>
#include <vector>

/// A lab's file as any other program sees it that has the library.
namespace test {

/// Runs the statements, in a new file if there is none, without the care that a lab takes.
void RunSql(const std::string& file, const std::string& sql);

/// The rows that the statement answers, as texts.
std::vector<std::vector<std::string>> RowsOf(const std::string& file, const std::string& sql);

}  // namespace test
