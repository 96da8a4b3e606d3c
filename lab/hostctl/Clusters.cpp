#include "lab/model/Clusters.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "platform/hostctl/KorelUtil.h"
#include "platform/hostctl/Optional.h"

namespace lab {

using namespace Tovrin::Korel;

void LabKorelInfo::JoinCluster(const Uuid& clusterUuid, KorelNodeType nodeType,
                               const std::string& preferredFaultDomain, bool wait, int reserved1,
                               int reserved2) {
  Call("JoinCluster",
       Arguments(clusterUuid, nodeType, preferredFaultDomain, wait, reserved1, reserved2),
       lab::JoinCluster, clusterUuid, nodeType, preferredFaultDomain);
}

void LabKorelInfo::CreateCluster(const std::string& clusterUuid, bool persist, bool wait) {
  Call("CreateCluster", Arguments(clusterUuid, persist, wait), lab::CreateCluster, clusterUuid,
       persist);
}

void LabKorelInfo::JoinClientCluster(const std::string& clusterUuid, bool wait) {
  Call("JoinClientCluster", Arguments(clusterUuid, wait), lab::JoinClientCluster, clusterUuid);
}

void LabKorelInfo::LeaveCluster(const Uuid& clusterUuid, bool wait) {
  Call("LeaveCluster", Arguments(clusterUuid, wait), lab::LeaveCluster, clusterUuid);
}

void LabKorelInfo::RestoreCluster(bool boot, bool postboot) {
  Call("RestoreCluster", RestoreClusters, boot, postboot);
}

std::vector<std::string> LabKorelInfo::GetJoinedClusterUuids() {
  return Call("GetJoinedClusterUuids", JoinedClusterUuids);
}

std::string LabKorelInfo::GetClusterUuid() { return Call("GetClusterUuid", FirstClusterUuid); }

bool LabKorelInfo::IsClientModeEnabled() { return Call("IsClientModeEnabled", IsClientMode); }

}  // namespace lab

std::vector<std::string> Tovrin::Korel::GetInactiveClusterUuids(KorelInfo&) {
  return lab::Call("GetInactiveClusterUuids", lab::InactiveClusterUuids);
}

Tovrin::Korel::KorelNodeType HskCtl::Korel::KorelUtil::GetNodeType() {
  return lab::Call("GetNodeType", lab::NodeTypeOf);
}
