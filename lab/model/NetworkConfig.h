#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"
#include "platform/hostctl/Records.h"

namespace lab {

/// A host's Korel network configuration. What is set or removed is so in the persisted and in the
/// active configuration; only ClearNetworkConfig and RestoreNetworkConfig act on the active one
/// alone.

/// Throws KorelCtlException naming the host's interfaces unless it has that one.
void CheckHasInterface(Store& store, const Host& host, const std::string& name);

/// An interface of a host.
struct Interface {
  std::string name;
  std::vector<std::string> trafficTypes;  ///< what it carries now
  bool isActive = false;                  ///< in the active configuration
  bool isPersisted = false;               ///< in the persisted one
};
/// In the order of the host's inventory.
std::vector<Interface> InterfacesOf(Store& store, const Host& host);

/// Configures one interface, which may be configured already; true when that replaces what was
/// persisted and not active. Throws KorelCtlException unless the host has the interface, the groups
/// are multicast addresses of their families, ports and time-to-live lie in their ranges and it
/// carries some traffic.
bool SetInterfaceConfig(Store& store, const Host& host,
                        const Tovrin::Korel::KorelHskNicConfig2& config);
/// What is active, in the order of the host's inventory.
std::vector<std::unique_ptr<Tovrin::Korel::KorelHskNicConfig2>> InterfaceConfigs(Store& store,
                                                                                 const Host& host);
/// The interface is active and carries that traffic. Throws KorelCtlException when there is no such
/// traffic type.
bool IsInterfaceConfigured(Store& store, const Host& host, const std::string& name,
                           const std::string& trafficType);
/// The interface no longer carries that traffic, and goes when it carries no other. Throws
/// KorelCtlException, unless `force`, when the host has no such interface, or when "korel" is named
/// and the interface is not configured.
void RemoveTraffic(Store& store, const Host& host, const std::string& name, bool force,
                   const std::string& trafficType);
/// Nothing is active; what is persisted stays.
void ClearNetworkConfig(Store& store, const Host& host);
/// What is persisted is active.
void RestoreNetworkConfig(Store& store, const Host& host);

}  // namespace lab
