#pragma once

#include <string>

namespace autocli {

/// Appends the word as a shell takes it, in quotation marks where it needs them.
void AppendShellWord(std::string& line, const std::string& word);

}  // namespace autocli
