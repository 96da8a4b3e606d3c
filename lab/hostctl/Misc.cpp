#include "platform/hostctl/Misc.h"

#include <cstdarg>
#include <cstdio>

#include "lab/common/Text.h"

namespace Tovrin::Misc {
namespace {

/// Fills `text` as vsnprintf does; the length that the whole would have, or negative.
int Print(std::string& text, const char* format, va_list arguments) {
  va_list copy;
  va_copy(copy, arguments);
  // The format is the caller's: that is what this function is for.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  const int length = std::vsnprintf(text.data(), text.size() + 1, format, copy);
#pragma GCC diagnostic pop
  va_end(copy);
  return length;
}

}  // namespace

std::string StrPrintf(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string text;
  int length = Print(text, format, arguments);
  if (length > 0) {
    text.resize(static_cast<std::size_t>(length));
    length = Print(text, format, arguments);
  }
  va_end(arguments);
  if (length < 0) lab::Fail("cannot render the format ", lab::Quoted(format));
  return text;
}

}  // namespace Tovrin::Misc
