#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include "lab/common/Uuids.h"
#include "platform/base/Str.h"
#include "platform/base/Uuid.h"

char* UUID_PackText(const char* text, char* buffer, std::size_t size) {
  constexpr std::size_t kDigits = 32;
  std::string packed;
  for (const char* c = text; *c != '\0'; ++c) {
    if (*c == '-') continue;
    if (packed.size() == kDigits + 4) return nullptr;
    if (packed.size() == 8 || packed.size() == 13 || packed.size() == 18 || packed.size() == 23) {
      packed += '-';
    }
    packed += *c;
  }
  const auto uuid = lab::ParseUuid(packed);
  if (!uuid || size <= packed.size()) return nullptr;
  return std::strcpy(buffer, lab::UuidText(*uuid).c_str());
}

int Str_Snprintf(char* buffer, std::size_t size, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  const int length = std::vsnprintf(buffer, size, format, arguments);
#pragma GCC diagnostic pop
  va_end(arguments);
  return length < 0 || static_cast<std::size_t>(length) >= size ? -1 : length;
}
