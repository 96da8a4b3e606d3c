#include "autocli/run/TellLine.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string_view>

namespace autocli {
namespace {

bool IsPlain(char c) {
  constexpr std::string_view kPlain = "_-./:,=@%+";
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         kPlain.find(c) != std::string_view::npos;
}

/// The word in quotation marks where a shell needs them.
void AppendWord(std::string& line, const std::string& word) {
  if (!word.empty() && std::all_of(word.begin(), word.end(), IsPlain)) {
    line += word;
    return;
  }
  line += '\'';
  for (const char c : word) {
    if (c == '\'') {
      line += "'\\''";
    } else {
      line += c;
    }
  }
  line += '\'';
}

}  // namespace

void TellLine(std::size_t number, const std::vector<std::string>& words) {
  std::string line = std::to_string(getpid()) + " " + std::to_string(number);
  for (const std::string& word : words) {
    line += ' ';
    AppendWord(line, word);
  }
  if (setenv("AUTOCLI_LINE", line.c_str(), 1) != 0) throw std::bad_alloc();
}

}  // namespace autocli
