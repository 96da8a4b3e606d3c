#include "lab/base/CommandLine.h"

#include <unistd.h>

#include <string_view>

#include "lab/base/Text.h"

namespace lab {

CommandLine CurrentCommand() {
  const char* variable = Environment("AUTOCLI_LINE");
  const std::string process = std::to_string(getpid()) + " ";
  std::string_view told = variable == nullptr ? "" : variable;
  if (!told.starts_with(process)) return {};
  told.remove_prefix(process.size());
  const std::size_t blank = told.find(' ');
  if (blank == std::string_view::npos) return {};
  return {std::string(told.substr(0, blank)), std::string(told.substr(blank + 1))};
}

}  // namespace lab
