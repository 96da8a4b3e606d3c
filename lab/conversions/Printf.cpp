#include <cstdarg>
#include <cstdio>

#include "lab/base/Text.h"
#include "platform/base/Str.h"
#include "platform/hostctl/Misc.h"

namespace {

/// As vsnprintf, but `arguments` can be used again.
int Print(char* buffer, std::size_t size, const char* format, va_list arguments) {
  va_list copy;
  va_copy(copy, arguments);
  // The format is the caller's: that is what these functions are for.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  const int length = std::vsnprintf(buffer, size, format, copy);
#pragma GCC diagnostic pop
  va_end(copy);
  return length;
}

}  // namespace

std::string Tovrin::Misc::StrPrintf(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string text;
  int length = Print(nullptr, 0, format, arguments);
  if (length > 0) {
    text.resize(static_cast<std::size_t>(length));
    length = Print(text.data(), text.size() + 1, format, arguments);
  }
  va_end(arguments);
  if (length < 0) lab::Fail("cannot render the format ", lab::Quoted(format));
  return text;
}

int Str_Snprintf(char* buffer, std::size_t size, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const int length = Print(buffer, size, format, arguments);
  va_end(arguments);
  return length < 0 || static_cast<std::size_t>(length) >= size ? -1 : length;
}
