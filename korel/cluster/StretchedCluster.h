#pragma once

#include <string>

#include "korel/frame/Frame.h"

namespace OstrelCli::KorelNamespace {

/// The host is an enabled member, and a cluster of it is stretched.
bool IsStretched(const HostControl& host);

/// The preferred fault domain of a cluster.
struct PreferredFaultDomain {
  std::string name;
  std::string id;
};

PreferredFaultDomain GetPreferredFaultDomain(const std::string& clusterUuid);

}  // namespace OstrelCli::KorelNamespace
