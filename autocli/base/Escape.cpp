#include "autocli/base/Escape.h"

#include <fmt/format.h>
#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>

namespace autocli {

namespace {

/// How many bytes from the start on are printable ASCII. Nearly all are, so eight are looked at in
/// one step.
std::size_t PlainPrefix(std::string_view text) {
  constexpr std::uint64_t kEach = 0x0101010101010101;
  std::size_t size = 0;
  for (; text.size() - size >= sizeof(kEach); size += sizeof(kEach)) {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, text.data() + size, sizeof(bytes));
    // Raises the top bit of a byte below a blank, of DEL, and of one that has it anyway.
    if (((bytes - 0x20 * kEach) | (bytes + kEach) | bytes) & (0x80 * kEach)) break;
  }
  while (size < text.size() && text[size] >= 0x20 && text[size] < 0x7f) ++size;
  return size;
}

/// Characters that take a place and show nothing there.
constexpr std::array<std::int32_t, 4> kFillers = {0x115f, 0x1160, 0x3164, 0xffa0};

void AppendCharacter(std::string& out, std::string_view bytes, std::int32_t code) {
  if (code == '\n') {
    out += "\\n";
  } else if (code == '\t') {
    out += "\\t";
  } else if (code == '\r') {
    out += "\\r";
  } else if (code < 0x80) {
    fmt::format_to(std::back_inserter(out), "\\x{:02x}", static_cast<unsigned char>(bytes[0]));
  } else if (IsShown(code)) {
    out += bytes;
  } else {
    fmt::format_to(std::back_inserter(out), "\\u{:04x}", code);
  }
}

}  // namespace

Character FirstOf(std::string_view text) {
  std::int32_t code = -1;
  const auto size =
      utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                       static_cast<utf8proc_ssize_t>(std::min<std::size_t>(text.size(), 4)), &code);
  if (size <= 0) return {-1, 1};
  return {code, static_cast<std::size_t>(size)};
}

bool IsShown(std::int32_t code) {
  switch (utf8proc_category(code)) {
    case UTF8PROC_CATEGORY_CC:
    case UTF8PROC_CATEGORY_CF:
    case UTF8PROC_CATEGORY_ZL:
    case UTF8PROC_CATEGORY_ZP:
      return false;
    default:
      return std::ranges::count(kFillers, code) == 0;
  }
}

void AppendEscaped(std::string& out, std::string_view text) {
  while (!text.empty()) {
    const std::size_t plain = PlainPrefix(text);
    out.append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) return;
    const auto [code, size] = FirstOf(text);
    AppendCharacter(out, text.substr(0, size), code);
    text.remove_prefix(size);
  }
}

std::string Escaped(std::string_view text) {
  std::string out;
  AppendEscaped(out, text);
  return out;
}

std::size_t CellWidth(std::string_view text) {
  std::size_t width = PlainPrefix(text);
  text.remove_prefix(width);
  while (!text.empty()) {
    const Character next = FirstOf(text);
    width += next.code < 0 ? 1 : static_cast<std::size_t>(utf8proc_charwidth(next.code));
    text.remove_prefix(next.size);
  }
  return width;
}

std::string Wrapped(std::string_view text, std::size_t indent, std::size_t width) {
  std::string out;
  while (true) {
    const std::string_view whole = text.substr(0, text.find('\n'));
    const std::string line = Escaped(whole);
    std::size_t column = indent;
    for (std::size_t at = 0; at < line.size();) {
      // A word together with the blanks in front of it.
      const std::size_t start = std::min(line.find_first_not_of(' ', at), line.size());
      const std::size_t end = std::min(line.find(' ', start), line.size());
      std::string_view word = std::string_view(line).substr(at, end - at);
      if (at > 0 && column + CellWidth(word) > width) {
        out += '\n';
        out.append(indent, ' ');
        column = indent;
        word = std::string_view(line).substr(start, end - start);
      }
      out += word;
      column += CellWidth(word);
      at = end;
    }
    if (whole.size() == text.size()) return out;
    text.remove_prefix(whole.size() + 1);
    out += '\n';
    if (!text.empty() && text[0] != '\n') out.append(indent, ' ');
  }
}

}  // namespace autocli
