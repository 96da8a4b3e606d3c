#include "autocli/base/ShellWord.h"

#include <algorithm>
#include <string_view>

namespace autocli {

namespace {

bool IsPlain(char c) {
  constexpr std::string_view kPlain = "_-./:,=@%+";
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         kPlain.find(c) != std::string_view::npos;
}

}  // namespace

void AppendShellWord(std::string& line, const std::string& word) {
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

}  // namespace autocli
