#include "lab/base/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <ctime>

#include "platform/autocli/Suggest.h"

namespace lab {
namespace {

constexpr std::size_t kMaxQuoted = 100;
constexpr std::size_t kMaxNameLength = 80;

}  // namespace

std::size_t Utf8CharacterSize(std::string_view text) {
  if (text.empty()) return 0;
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byteAt(0);
  if (lead < 0x80) return 1;
  const std::size_t size = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
  if (lead < 0xc2 || lead > 0xf4 || text.size() < size) return 0;
  for (std::size_t i = 1; i < size; ++i) {
    if ((byteAt(i) & 0xc0U) != 0x80) return 0;
  }
  // What is left to exclude shows in the second byte: overlong forms, surrogates, beyond U+10FFFF.
  const unsigned char second = byteAt(1);
  if ((lead == 0xe0 && second < 0xa0) || (lead == 0xed && second > 0x9f)) return 0;
  if ((lead == 0xf0 && second < 0x90) || (lead == 0xf4 && second > 0x8f)) return 0;
  return size;
}

std::string PercentEncoded(std::string_view text, bool (*isKept)(char)) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : text) {
    if (isKept(c)) {
      encoded += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    encoded += {'%', kDigits[byte >> 4U], kDigits[byte & 0xfU]};
  }
  return encoded;
}

std::string Quoted(std::string_view text) {
  if (text.size() <= kMaxQuoted) return Tovrin::Misc::StrCat("'", text, "'");
  std::size_t end = 0;
  while (true) {
    const std::size_t next = end + std::max<std::size_t>(1, Utf8CharacterSize(text.substr(end)));
    if (next > kMaxQuoted) break;
    end = next;
  }
  return Tovrin::Misc::StrCat("'", text.substr(0, end), "...'");
}

std::string Joined(const std::vector<std::string>& texts, std::string_view separator) {
  std::string joined;
  for (const std::string& text : texts) {
    if (!joined.empty()) joined += separator;
    joined += text;
  }
  return joined;
}

const char* Environment(const char* variable) { return secure_getenv(variable); }

bool IsPlainName(std::string_view name, bool withColon) {
  if (name.empty() || name.size() > kMaxNameLength || !IsLetterOrDigit(name[0])) return false;
  return std::all_of(name.begin(), name.end(), [&](char c) {
    return IsLetterOrDigit(c) || c == '.' || c == '_' || c == '-' || (withColon && c == ':');
  });
}

void CheckPlainName(std::string_view kind, const std::string& name) {
  if (IsPlainName(name)) return;
  Fail(Quoted(name), " is not a ", kind, " name: 1 to ", std::to_string(kMaxNameLength),
       " letters, digits, points, underscores and hyphens, a letter or digit first");
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& words) {
  const std::string closest = Corvex::Suggest::Closest(word, words);
  return closest.empty() ? "" : ", did you mean " + Quoted(closest) + "?";
}

void CheckRange(std::string_view what, std::int64_t value, std::int64_t min, std::int64_t max) {
  if (value >= min && value <= max) return;
  Fail(what, " must be from ", std::to_string(min), " to ", std::to_string(max), ", got ",
       std::to_string(value));
}

std::optional<std::int64_t> ParseNumber(std::string_view text) {
  constexpr std::size_t kMaxDigits = 18;
  if (text.empty() || text.size() > kMaxDigits || (text.size() > 1 && text[0] == '0')) {
    return std::nullopt;
  }
  std::int64_t number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    number = number * 10 + (c - '0');
  }
  return number;
}

std::vector<std::string> Split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  while (true) {
    const std::size_t end = text.find(separator);
    pieces.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return pieces;
    text.remove_prefix(end + 1);
  }
}

std::vector<std::string> Lines(std::string_view text) {
  std::vector<std::string> lines = Split(text, '\n');
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

std::string LocalTime(std::time_t when) {
  std::tm parts{};
  localtime_r(&when, &parts);
  std::array<char, 64> buffer{};
  const std::string_view text(
      buffer.data(), std::strftime(buffer.data(), buffer.size(), "%Y-%m-%dT%H:%M:%S%z", &parts));
  // strftime writes the offset without the colon.
  const std::size_t minutes = text.size() - 2;
  return Tovrin::Misc::StrCat(text.substr(0, minutes), ":", text.substr(minutes));
}

std::string UtcNow() { return UtcTime(std::time(nullptr)); }

std::string UtcTime(std::time_t when) {
  std::tm parts{};
  if (gmtime_r(&when, &parts) == nullptr) return std::to_string(when);
  std::array<char, 64> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

}  // namespace lab
