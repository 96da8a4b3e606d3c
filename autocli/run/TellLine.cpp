#include "autocli/run/TellLine.h"

#include <unistd.h>

#include <cstdlib>
#include <new>

#include "autocli/base/ShellWord.h"

namespace autocli {

void TellLine(std::size_t number, const std::vector<std::string>& words) {
  std::string line = std::to_string(getpid()) + " " + std::to_string(number);
  for (const std::string& word : words) {
    line += ' ';
    AppendShellWord(line, word);
  }
  if (setenv("AUTOCLI_LINE", line.c_str(), 1) != 0) throw std::bad_alloc();
}

}  // namespace autocli
