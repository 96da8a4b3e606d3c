#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// What commands of "korel cluster" share.
namespace OstrelCli::KorelNamespace {

/// Longest name of a preferred fault domain, in characters.
inline constexpr std::size_t kMaxPreferredFaultDomainLength = 256;

/// Where unicast agents listen unless told otherwise.
inline constexpr std::int64_t kDefaultUnicastPort = 12321;

inline constexpr const char* kNoUuid = "00000000-0000-0000-0000-000000000000";

inline constexpr const char* kHostIsInClientCluster =
    "The host is in a Korel client cluster and enabled for Korel client mode. You need to remove "
    "it "
    "from the cluster or disable client mode.";

/// The text reads as an IPv4 or IPv6 address.
bool IsIpAddress(const std::string& text);

/// The refusal of a text that does not.
std::string InvalidAddress(const std::string& text);

/// The texts, a comma between neighbours.
std::string JoinWithCommas(const std::vector<std::string>& texts);

}  // namespace OstrelCli::KorelNamespace
