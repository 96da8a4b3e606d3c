#include "lab/model/ClusterFacts.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "platform/hostctl/KorelUtil.h"

namespace lab {

void LabKorelInfo::SetPreferredFaultDomain(const std::string& name,
                                           const std::string& clusterUuid) {
  Call("SetPreferredFaultDomain", lab::SetPreferredFaultDomain, name, clusterUuid);
}

bool LabKorelInfo::IsDataInTransitEncryptionEnabled(const std::string& clusterUuid,
                                                    bool fromCluster) {
  return Call("IsDataInTransitEncryptionEnabled", Arguments(clusterUuid, fromCluster), EncryptionOf,
              clusterUuid)
      .isEnabled;
}

void LabKorelInfo::SetDataInTransitEncryption(const std::string& clusterUuid, bool enabled,
                                              const std::string& state, int reserved) {
  Call("SetDataInTransitEncryption", Arguments(clusterUuid, enabled, state, reserved),
       SetEncryption, clusterUuid, enabled, state);
}

std::int64_t LabKorelInfo::GetRekeyInterval(const std::string& clusterUuid, bool fromCluster) {
  return Call("GetRekeyInterval", Arguments(clusterUuid, fromCluster), RekeyInterval, clusterUuid);
}

void LabKorelInfo::SetRekeyInterval(const std::string& clusterUuid, std::int64_t minutes) {
  Call("SetRekeyInterval", lab::SetRekeyInterval, clusterUuid, minutes);
}

}  // namespace lab

namespace HskCtl::Korel {

void KorelUtil::GetInfoFromHXDS(const std::string& clusterUuid,
                                Tovrin::Korel::KorelClusterInfoDetailed& info) {
  info = lab::Call("GetInfoFromHXDS", lab::DirectoryInfo, clusterUuid);
}

void KorelUtil::GetPreferredFaultDomainInfo(const std::string& clusterUuid, std::string& name,
                                            std::string& id) {
  name = lab::Call("GetPreferredFaultDomainInfo", lab::PreferredFaultDomain, clusterUuid);
  id = name.empty() ? name : lab::FaultDomainId(name);
}

bool KorelUtil::IsInStretchedCluster() {
  return lab::Call("IsInStretchedCluster", lab::IsInStretchedCluster);
}

}  // namespace HskCtl::Korel
