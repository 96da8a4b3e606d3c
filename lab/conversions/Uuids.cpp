#include "lab/conversions/Uuids.h"

#include <cstdint>
#include <cstring>

#include "lab/base/Text.h"
#include "platform/base/Uuid.h"
#include "platform/hostctl/KorelUtil.h"

namespace lab {
namespace {

using Tovrin::Korel::Uuid;

constexpr std::size_t kTextLength = 36;

bool IsHyphenPlace(std::size_t i) { return i == 8 || i == 13 || i == 18 || i == 23; }

/// FNV-1a, its bits mixed at the end: texts that differ in one character give unlike numbers.
std::uint64_t Hash(std::string_view text, std::uint64_t start) {
  std::uint64_t hash = start;
  for (const char c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 0x100000001b3U;
  }
  hash = (hash ^ hash >> 30U) * 0xbf58476d1ce4e5b9U;
  hash = (hash ^ hash >> 27U) * 0x94d049bb133111ebU;
  return hash ^ hash >> 31U;
}

}  // namespace

std::optional<Uuid> ParseUuid(std::string_view text) {
  if (text.size() != kTextLength) return std::nullopt;
  Uuid uuid;
  for (std::size_t i = 0; i < kTextLength; ++i) {
    if (IsHyphenPlace(i)) {
      if (text[i] != '-') return std::nullopt;
      continue;
    }
    const int digit = HexDigit(text[i]);
    if (digit < 0) return std::nullopt;
    auto& half = i < 18 ? uuid.high : uuid.low;
    half = half << 4U | static_cast<std::uint64_t>(digit);
  }
  return uuid;
}

std::string UuidText(const Uuid& uuid) {
  std::string text;
  text.reserve(kTextLength);
  for (unsigned nibble = 0; nibble < 32; ++nibble) {
    if (IsHyphenPlace(text.size())) text += '-';
    const std::uint64_t half = nibble < 16 ? uuid.high : uuid.low;
    text += "0123456789abcdef"[half >> (60U - nibble % 16 * 4U) & 0xfU];
  }
  return text;
}

Uuid CheckedUuid(const std::string& text) {
  const auto uuid = ParseUuid(text);
  if (!uuid) {
    Fail(Quoted(text), " is not a UUID of the form \"nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn\"");
  }
  return *uuid;
}

std::string CanonicalUuid(const std::string& text) { return UuidText(CheckedUuid(text)); }

std::string CanonicalNewUuid(const std::string& text) {
  std::string uuid = CanonicalUuid(text);
  if (uuid == kZeroUuid) Fail("the UUID of all zeros stands for none and cannot be used");
  return uuid;
}

std::string DerivedUuid(std::string_view seed) {
  Uuid uuid{Hash(seed, 0xcbf29ce484222325U), Hash(seed, 0x6c62272e07bb0142U)};
  uuid.high = (uuid.high & ~0xf000ULL) | 0x8000ULL;  // version 8: made by a rule of our own
  uuid.low = (uuid.low & ~(3ULL << 62U)) | 2ULL << 62U;
  return UuidText(uuid);
}

}  // namespace lab

namespace HskCtl::Korel {

std::string KorelUtil::KorelUuidToString(const Uuid& uuid) { return lab::UuidText(uuid); }

}  // namespace HskCtl::Korel

char* UUID_PackText(const char* text, char* buffer, std::size_t size) {
  std::string packed;
  for (const char* c = text; *c != '\0'; ++c) {
    if (*c == '-') continue;
    if (packed.size() == lab::kTextLength) return nullptr;
    if (lab::IsHyphenPlace(packed.size())) packed += '-';
    packed += *c;
  }
  const auto uuid = lab::ParseUuid(packed);
  if (!uuid || size <= packed.size()) return nullptr;
  return std::strcpy(buffer, lab::UuidText(*uuid).c_str());
}
