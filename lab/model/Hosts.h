#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lab/model/Inventory.h"
#include "lab/store/Store.h"

namespace lab {

/// A host of the lab.
struct Host {
  std::int64_t id = 0;
  std::string name;
  std::string nodeUuid;
  std::string faultDomain;
};

/// The host that this process stands on: $KOREL_LAB_HOST, else "host1", else the lab's first one.
/// Throws KorelCtlException listing the hosts when there is none of that name.
Host CurrentHost(Store& store);
/// The name that $KOREL_LAB_HOST gives, whether there is such a host or not; empty without it.
std::string NamedHost();
/// The host that this process stands on; nothing when there is none of that name.
std::optional<Host> FindCurrentHost(Store& store);
/// Throws KorelCtlException listing the hosts when there is none of that name.
Host HostNamed(Store& store, const std::string& name);
/// In the order in which they were added.
std::vector<Host> AllHosts(Store& store);
/// Adds the device to the host of that id, as it is said.
void InsertDevice(Store& store, std::int64_t host, const DeviceInventory& device,
                  const std::string& uuid);
/// Adds a host, with UUIDs that follow from the names of the host and its devices, and
/// the trace daemon running. Throws KorelCtlException when the name is taken or malformed.
void AddHost(Store& store, const HostInventory& inventory);

/// Names are 1 to 256 bytes of UTF-8 without control characters.
void SetFaultDomain(Store& store, const Host& host, const std::string& name);
/// Back to a fault domain of the host's own, named as the host.
void ResetFaultDomain(Store& store, const Host& host);
/// The same for the same name.
std::string FaultDomainId(const std::string& name);
/// Throws KorelCtlException unless the name is 1 to 256 characters of UTF-8 without control
/// characters. A host's own fault domain is held to bytes, which SetFaultDomain counts.
void CheckFaultDomainName(const std::string& name);

}  // namespace lab
