#include "lab/model/NetworkConfig.h"

#include <cstdio>

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"

namespace lab {

using Tovrin::Korel::KorelHskNicConfig2;

void LabKorelInfo::SetHsknicConfig(const KorelHskNicConfig2& config) {
  if (!Call("SetHsknicConfig", SetInterfaceConfig, config)) return;
  std::fprintf(stderr, "note: this replaces the persisted configuration of interface %s\n",
               config.GetHsknicName().c_str());
}

std::vector<std::unique_ptr<KorelHskNicConfig2>> LabKorelInfo::GetHsknicConfigs() {
  return Call("GetHsknicConfigs", InterfaceConfigs);
}

void LabKorelInfo::RemoveHsknic(const std::string& interfaceName, bool force,
                                const std::string& trafficType) {
  Call("RemoveHsknic", RemoveTraffic, interfaceName, force, trafficType);
}

bool LabKorelInfo::IsHsknicConfigured(const std::string& interfaceName,
                                      const std::string& trafficType) {
  return Call("IsHsknicConfigured", IsInterfaceConfigured, interfaceName, trafficType);
}

void LabKorelInfo::RestoreNetworkConfig() {
  Call("RestoreNetworkConfig", lab::RestoreNetworkConfig);
}

void LabKorelInfo::ClearNetworkConfig() { Call("ClearNetworkConfig", lab::ClearNetworkConfig); }

}  // namespace lab
