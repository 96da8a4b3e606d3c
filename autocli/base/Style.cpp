#include "autocli/base/Style.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>

namespace autocli {

namespace {

constexpr std::size_t kNarrowest = 40;
constexpr std::size_t kWidest = 100;

std::string_view Setting(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

const char* CodeOf(Ink ink) {
  switch (ink) {
    case Ink::Heading:
      return "1";
    case Ink::Name:
      return "36";
    case Ink::Error:
      return "1;31";
  }
  return "";
}

}  // namespace

std::string Painted(Ink ink, std::string_view text, bool isColored) {
  std::string out;
  if (isColored) out.append("\x1b[").append(CodeOf(ink)).append("m");
  out += text;
  if (isColored) out += "\x1b[0m";
  return out;
}

bool IsColorWelcome() {
  const std::string_view terminal = Setting("TERM");
  return Setting("NO_COLOR").empty() && !terminal.empty() && terminal != "dumb";
}

std::size_t WidthFor(std::size_t columns) {
  if (columns == 0) {
    const std::string_view set = Setting("COLUMNS");
    std::from_chars(set.data(), set.data() + set.size(), columns);
  }
  return columns == 0 ? Style().width : std::clamp(columns, kNarrowest, kWidest);
}

}  // namespace autocli
