#pragma once

#include <string>
#include <string_view>

namespace autocli {

/// Appends `text` so that a terminal shows it and does not obey it: control characters (C0, DEL,
/// C1) and bytes that are no valid UTF-8 are written as \n, \t, \r, \x1b, \u009b, \xff.
void AppendEscaped(std::string& out, std::string_view text);

std::string Escaped(std::string_view text);

/// Terminal cells that an escaped text takes: none for a combining mark, two for a wide character.
std::size_t CellWidth(std::string_view text);

/// Breaks `text` at blanks so that a line ends at column `width` where words allow, and at its own
/// line feeds. Every line but the first is indented by `indent`, where the first begins too.
/// Escapes what AppendEscaped escapes.
std::string Wrapped(std::string_view text, std::size_t indent, std::size_t width);

}  // namespace autocli
