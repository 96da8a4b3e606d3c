#include "lab/hostctl/Call.h"
#include "lab/hostctl/Records.h"
#include "lab/model/Agents.h"
#include "lab/model/ClusterFacts.h"
#include "lab/model/Clusters.h"
#include "lab/model/HostState.h"
#include "platform/hostctl/KorelUtil.h"

using lab::Arguments;
using lab::Call;
using lab::Host;
using lab::Store;

namespace HskCtl::Korel {

void KorelUtil::DecomCancel() { Call("DecomCancel", Arguments(), lab::CancelMaintenance); }

void KorelUtil::GetInfoFromHXDS(const std::string& clusterUuid,
                                Tovrin::Korel::KorelClusterInfoDetailed& info) {
  info = Call("GetInfoFromHXDS", Arguments(clusterUuid), [&](Store& store, const Host& host) {
    return lab::DirectoryInfo(store, host, clusterUuid);
  });
}

void KorelUtil::GetPreferredFaultDomainInfo(const std::string& clusterUuid, std::string& name,
                                            std::string& id) {
  name = Call("GetPreferredFaultDomainInfo", Arguments(clusterUuid),
              [&](Store& store, const Host& host) {
                return lab::PreferredFaultDomain(store, host, clusterUuid);
              });
  id = name.empty() ? name : lab::FaultDomainId(name);
}

void KorelUtil::GetUnicastModeForCluster(bool& isUnicast, const std::string& clusterUuid) {
  isUnicast =
      Call("GetUnicastModeForCluster", Arguments(clusterUuid), [&](Store& store, const Host& host) {
        const auto own = lab::RequireMember(store, host, clusterUuid);
        return lab::IsUnicast(store, host, own.clusterUuid);
      });
}

bool KorelUtil::IsInStretchedCluster() {
  return Call("IsInStretchedCluster", Arguments(), lab::IsInStretchedCluster);
}

}  // namespace HskCtl::Korel
