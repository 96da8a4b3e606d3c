#pragma once

#include <cstdint>
#include <string>

/// How unicast agents are addressed.
namespace OstrelCli::KorelNamespace {

/// Where unicast agents listen unless told otherwise.
inline constexpr std::int64_t kDefaultUnicastPort = 12321;

inline constexpr const char* kNoUuid = "00000000-0000-0000-0000-000000000000";

/// The text reads as an IPv4 or IPv6 address.
bool IsIpAddress(const std::string& text);

/// The refusal of a text that does not.
std::string InvalidAddress(const std::string& text);

}  // namespace OstrelCli::KorelNamespace
