#include "autocli/render/Formatter.h"

#include <array>
#include <utility>

namespace autocli {

namespace {

constexpr std::array<std::pair<const char*, const Formatter& (*)()>, 4> kFormatters = {{
    {"simple", SimpleFormatter},
    {"table", TableFormatter},
    {"json", JsonFormatter},
    {"csv", CsvFormatter},
}};

}  // namespace

std::vector<std::string> FormatterNames() {
  std::vector<std::string> names;
  names.reserve(kFormatters.size());
  for (const auto& [name, formatter] : kFormatters) names.emplace_back(name);
  return names;
}

const Formatter& FormatterNamed(const std::string& name) {
  for (const auto& [known, formatter] : kFormatters) {
    if (name == known) return formatter();
  }
  return SimpleFormatter();
}

}  // namespace autocli
