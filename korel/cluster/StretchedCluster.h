#pragma once

#include <cstddef>
#include <string>

#include "korel/frame/Frame.h"

namespace OstrelCli::KorelNamespace {

/// Longest name of a preferred fault domain, in characters.
inline constexpr std::size_t kMaxPreferredFaultDomainLength = 256;

/// The host is an enabled member, and a cluster of it is stretched.
bool IsStretched(const HostControl& host);

/// The preferred fault domain of a cluster.
struct PreferredFaultDomain {
  std::string name;
  std::string id;
};

PreferredFaultDomain GetPreferredFaultDomain(const std::string& clusterUuid);

}  // namespace OstrelCli::KorelNamespace
