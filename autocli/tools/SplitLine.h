#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace autocli {

/// The words of a line, quoted as for a shell: blanks and tabs part words; between single quotes
/// all stands for itself; a backslash takes the next byte as it is, between double quotes only
/// before
/// `"` and `\`. Nothing is expanded. A word that begins with `#` ends the line. A line that cannot
/// be split leaves its reason in `problem`.
std::vector<std::string> SplitLine(std::string_view line, std::string& problem);

}  // namespace autocli
