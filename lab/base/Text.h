#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/hostctl/KorelCtlException.h"
#include "platform/hostctl/Misc.h"

namespace lab {

/// Throws KorelCtlException with the pieces, one after the other.
template <typename... Pieces>
[[noreturn]] void Fail(const Pieces&... pieces) {
  throw Tovrin::Lib::Korel::KorelCtlException(Tovrin::Misc::StrCat(pieces...));
}

/// The text in single quotes for a message, cut (between characters) when it is long.
std::string Quoted(std::string_view text);

/// The texts with `separator` between them.
std::string Joined(const std::vector<std::string>& texts, std::string_view separator);

/// Of ASCII's.
constexpr bool IsLetterOrDigit(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}
/// A capital letter of ASCII as a small one; any other character as it is.
constexpr char LowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
/// The value of a hexadecimal digit in either case; -1 for any other character.
constexpr int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = LowerCase(c);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}
/// The text with each byte that `isKept` is false for as "%3B".
std::string PercentEncoded(std::string_view text, bool (*isKept)(char));

/// The number of bytes of the UTF-8 character that `text` begins with; 0 when it begins with none.
std::size_t Utf8CharacterSize(std::string_view text);

/// The value of a variable of the environment; null when it is not set, and in a process that runs
/// with more rights than its caller, who must not choose what it reads and writes.
const char* Environment(const char* variable);

/// A name of a host, datastore or device: [A-Za-z0-9][A-Za-z0-9._:-]* of at most 80 characters,
/// the colon only in a device's.
bool IsPlainName(std::string_view name, bool withColon = false);

/// Throws KorelCtlException saying what a `kind` name ("datastore") may look like, unless the name
/// is plain.
void CheckPlainName(std::string_view kind, const std::string& name);

/// ", did you mean 'x'?" with the word of `words` that is nearest to `word`; empty when none is
/// near.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& words);

/// Throws KorelCtlException unless `min <= value <= max`: "the port must be from 1 to 65535, got
/// 0".
void CheckRange(std::string_view what, std::int64_t value, std::int64_t min, std::int64_t max);

/// Reads a number of decimal digits without leading zeros, whole; nothing when the text is no such
/// number or has more than 18 digits.
std::optional<std::int64_t> ParseNumber(std::string_view text);

/// The pieces between the separators; one empty piece for an empty text.
std::vector<std::string> Split(std::string_view text, char separator);

/// The lines of a text without their ends; the last one need not have one.
std::vector<std::string> Lines(std::string_view text);

/// The local time of `when`, with its offset from UTC, as "2026-01-31T23:59:59+01:00".
std::string LocalTime(std::time_t when);

/// The time as "2026-01-31T22:59:59Z".
std::string UtcTime(std::time_t when);
/// The present time as "2026-01-31T22:59:59Z".
std::string UtcNow();

}  // namespace lab
