#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace autocli {

/// Whether text for people is coloured: as it suits who reads it, or as they say.
enum class Coloring { Auto, Always, Never };

/// How a text is laid out for who reads it.
struct Style {
  std::size_t width = 80;
  bool isColored = false;
};

/// What is coloured; everything else is not.
enum class Ink { Heading, Name, Error };

/// The text in its colour, or as it is.
std::string Painted(Ink ink, std::string_view text, bool isColored);

/// Nothing in the environment speaks against colour on a terminal: NO_COLOR is unset or empty, TERM
/// is set and not "dumb".
bool IsColorWelcome();

/// The width for text on a terminal of that many columns, 0 for one that does not say or for none:
/// those columns, else COLUMNS of the environment, else 80, and never so few or so many that it
/// reads badly.
std::size_t WidthFor(std::size_t columns);

}  // namespace autocli
