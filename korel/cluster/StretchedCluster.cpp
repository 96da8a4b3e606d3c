#include "korel/cluster/StretchedCluster.h"

namespace OstrelCli::KorelNamespace {

bool IsStretched(const HostControl& host) {
  return host->GetClusterInfo(true)->enabled && KorelUtil::IsInStretchedCluster();
}

PreferredFaultDomain GetPreferredFaultDomain(const std::string& clusterUuid) {
  PreferredFaultDomain preferred;
  KorelUtil::GetPreferredFaultDomainInfo(clusterUuid, preferred.name, preferred.id);
  return preferred;
}

}  // namespace OstrelCli::KorelNamespace
