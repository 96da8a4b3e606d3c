#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace autocli {

/// One code point, or one byte that begins none.
struct Character {
  std::int32_t code;  ///< negative for a byte that is no valid UTF-8
  std::size_t size;   ///< in bytes
};

/// The first character of a text that is not empty.
Character FirstOf(std::string_view text);

/// A terminal shows the character and does not obey it. Not so control characters (C0, DEL, C1),
/// and those that are not seen themselves, such as marks that turn the direction of what follows.
bool IsShown(std::int32_t code);

/// Appends `text` so that a terminal shows all of it and obeys nothing: characters that are not
/// shown and bytes that are no valid UTF-8 are written as \n, \t, \r, \x1b, \u009b, \u202e, \xff.
void AppendEscaped(std::string& out, std::string_view text);

std::string Escaped(std::string_view text);

/// Terminal cells that an escaped text takes: none for a combining mark, two for a wide character.
std::size_t CellWidth(std::string_view text);

/// Breaks `text` at blanks so that a line ends at column `width` where words allow, and at its own
/// line feeds. Every line but the first is indented by `indent`, where the first begins too.
/// Escapes what AppendEscaped escapes.
std::string Wrapped(std::string_view text, std::size_t indent, std::size_t width);

}  // namespace autocli
