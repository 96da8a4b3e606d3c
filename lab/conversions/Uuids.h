#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/hostctl/Records.h"

namespace lab {

/// Stands for "none".
inline constexpr std::string_view kZeroUuid = "00000000-0000-0000-0000-000000000000";

/// Reads 8-4-4-4-12 hexadecimal digits in either case; nothing when the text is any other.
std::optional<Tovrin::Korel::Uuid> ParseUuid(std::string_view text);
/// The text form, in lower case.
std::string UuidText(const Tovrin::Korel::Uuid& uuid);

/// The UUID of that text; throws KorelCtlException naming a text that is none.
Tovrin::Korel::Uuid CheckedUuid(const std::string& text);
/// The same UUID in lower case; throws as CheckedUuid.
std::string CanonicalUuid(const std::string& text);
/// As CanonicalUuid, for a UUID that something new is to bear: all zeros is refused too.
std::string CanonicalNewUuid(const std::string& text);

/// A well-formed UUID that is the same for the same seed, so that equal labs have equal UUIDs.
std::string DerivedUuid(std::string_view seed);

}  // namespace lab
