#include "lab/common/Uuids.h"
#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "lab/hostctl/Records.h"
#include "lab/model/ClusterFacts.h"
#include "lab/model/Clusters.h"
#include "lab/model/HostState.h"

namespace lab {

using namespace Tovrin::Korel;

void LabKorelInfo::JoinCluster(const Uuid& clusterUuid, KorelNodeType nodeType,
                               const std::string& preferredFaultDomain, bool wait, int reserved1,
                               int reserved2) {
  Call("JoinCluster",
       Arguments(clusterUuid, Number(nodeType), preferredFaultDomain, wait, reserved1, reserved2),
       [&](Store& store, const Host& host) {
         lab::JoinCluster(store, host, UuidText(clusterUuid), nodeType, preferredFaultDomain);
       });
}

void LabKorelInfo::CreateCluster(const std::string& clusterUuid, bool persist, bool wait) {
  Call("CreateCluster", Arguments(clusterUuid, persist, wait), [&](Store& store, const Host& host) {
    lab::CreateCluster(store, host, clusterUuid, persist);
  });
}

void LabKorelInfo::JoinClientCluster(const std::string& clusterUuid, bool wait) {
  Call("JoinClientCluster", Arguments(clusterUuid, wait),
       [&](Store& store, const Host& host) { lab::JoinClientCluster(store, host, clusterUuid); });
}

void LabKorelInfo::LeaveCluster(const Uuid& clusterUuid, bool wait) {
  Call("LeaveCluster", Arguments(clusterUuid, wait), [&](Store& store, const Host& host) {
    lab::LeaveCluster(store, host, UuidText(clusterUuid));
  });
}

std::shared_ptr<KorelClusterInfo> LabKorelInfo::GetClusterInfo(bool detailed) {
  return Call("GetClusterInfo", Arguments(detailed), [&](Store& store, const Host& host) {
    auto info = std::make_shared<KorelClusterInfo>();
    info->enabled = IsEnabled(store, host);
    if (detailed) {
      info->nodeUuid = host.nodeUuid;
      info->maintenanceState = MaintenanceState(store, host);
    }
    return info;
  });
}

std::vector<std::string> LabKorelInfo::GetJoinedClusterUuids() {
  return Call("GetJoinedClusterUuids", Arguments(), [](Store& store, const Host& host) {
    std::vector<std::string> uuids;
    for (const Membership& membership : ActiveMemberships(store, host)) {
      uuids.push_back(membership.clusterUuid);
    }
    return uuids;
  });
}

std::string LabKorelInfo::GetClusterUuid() {
  return Call("GetClusterUuid", Arguments(), [](Store& store, const Host& host) {
    const auto first = FirstMembership(store, host);
    return first ? first->clusterUuid : std::string(kZeroUuid);
  });
}

bool LabKorelInfo::IsClientModeEnabled() {
  return Call("IsClientModeEnabled", Arguments(), IsClientMode);
}

void LabKorelInfo::SetFaultDomainName(const std::string& name) {
  Call("SetFaultDomainName", Arguments(name),
       [&](Store& store, const Host& host) { SetFaultDomain(store, host, name); });
}

void LabKorelInfo::ResetFaultDomain() {
  Call("ResetFaultDomain", Arguments(),
       [](Store& store, const Host& host) { lab::ResetFaultDomain(store, host); });
}

std::string LabKorelInfo::GetFaultDomainName() {
  return Call("GetFaultDomainName", Arguments(),
              [](Store&, const Host& host) { return host.faultDomain; });
}

void LabKorelInfo::RestoreCluster(bool boot, bool postboot) {
  Call("RestoreCluster", Arguments(boot, postboot), [&](Store& store, const Host& host) {
    if (boot && postboot) Fail("a restore is for one stage of a boot at most");
    RestoreClusters(store, host);
  });
}

void LabKorelInfo::SetPreferredFaultDomain(const std::string& name,
                                           const std::string& clusterUuid) {
  Call("SetPreferredFaultDomain", Arguments(name, clusterUuid),
       [&](Store& store, const Host& host) {
         lab::SetPreferredFaultDomain(store, host, name, clusterUuid);
       });
}

void LabKorelInfo::SetKorelMaxEnabled(bool enabled) {
  Call("SetKorelMaxEnabled", Arguments(enabled),
       [&](Store& store, const Host& host) { SetKorelMax(store, host, enabled); });
}

}  // namespace lab
