#include "lab/model/NetworkConfig.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "lab/hostctl/Records.h"
#include "lab/model/ClusterFacts.h"

namespace lab {

using namespace Tovrin::Korel;

void LabKorelInfo::SetHsknicConfig(const KorelHskNicConfig2& config) {
  Call("SetHsknicConfig", Arguments(config),
       [&](Store& store, const Host& host) { SetInterfaceConfig(store, host, config); });
}

std::vector<std::unique_ptr<KorelHskNicConfig2>> LabKorelInfo::GetHsknicConfigs() {
  return Call("GetHsknicConfigs", Arguments(), InterfaceConfigs);
}

void LabKorelInfo::RemoveHsknic(const std::string& interfaceName, bool force,
                                const std::string& trafficType) {
  Call("RemoveHsknic", Arguments(interfaceName, force, trafficType),
       [&](Store& store, const Host& host) {
         RemoveTraffic(store, host, interfaceName, force, trafficType);
       });
}

bool LabKorelInfo::IsHsknicConfigured(const std::string& interfaceName,
                                      const std::string& trafficType) {
  return Call("IsHsknicConfigured", Arguments(interfaceName, trafficType),
              [&](Store& store, const Host& host) {
                return IsInterfaceConfigured(store, host, interfaceName, trafficType);
              });
}

void LabKorelInfo::RestoreNetworkConfig() {
  Call("RestoreNetworkConfig", Arguments(),
       [](Store& store, const Host& host) { lab::RestoreNetworkConfig(store, host); });
}

void LabKorelInfo::ClearNetworkConfig() {
  Call("ClearNetworkConfig", Arguments(),
       [](Store& store, const Host& host) { lab::ClearNetworkConfig(store, host); });
}

bool LabKorelInfo::IsDataInTransitEncryptionEnabled(const std::string& clusterUuid,
                                                    bool fromCluster) {
  return Call(
      "IsDataInTransitEncryptionEnabled", Arguments(clusterUuid, fromCluster),
      [&](Store& store, const Host&) { return EncryptionOf(store, clusterUuid).isEnabled; });
}

void LabKorelInfo::SetDataInTransitEncryption(const std::string& clusterUuid, bool enabled,
                                              const std::string& state, int reserved) {
  Call("SetDataInTransitEncryption", Arguments(clusterUuid, enabled, state, reserved),
       [&](Store& store, const Host& host) {
         SetEncryption(store, host, clusterUuid, enabled, state);
       });
}

std::int64_t LabKorelInfo::GetRekeyInterval(const std::string& clusterUuid, bool fromCluster) {
  return Call(
      "GetRekeyInterval", Arguments(clusterUuid, fromCluster),
      [&](Store& store, const Host&) { return EncryptionOf(store, clusterUuid).rekeyMinutes; });
}

void LabKorelInfo::SetRekeyInterval(const std::string& clusterUuid, std::int64_t minutes) {
  Call("SetRekeyInterval", Arguments(clusterUuid, minutes), [&](Store& store, const Host& host) {
    lab::SetRekeyInterval(store, host, clusterUuid, minutes);
  });
}

}  // namespace lab
