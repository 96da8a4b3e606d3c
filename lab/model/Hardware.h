#pragma once

#include <cstdint>
#include <string>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"

/// What is put into a lab and taken out of it while it runs. Every function throws
/// KorelCtlException when it cannot do as told.
namespace lab {

/// Puts a device into the host. Its UUID is its own, also when it bears the name of one that was
/// taken out.
void AddDevice(Store& store, const Host& host, const DeviceInventory& device);
/// Takes a device out of the host; not one that is in use.
void RemoveDevice(Store& store, const Host& host, const std::string& device);

/// Puts an interface into the host, after those that it has.
void AddInterface(Store& store, const Host& host, const std::string& name);
/// Takes an interface out of the host; not one that the host's network configuration, active or
/// persisted, or one of its unicast agents uses.
void RemoveInterface(Store& store, const Host& host, const std::string& name);

/// Takes a host with all that it has out of the lab; not the last one, and none that is in a
/// cluster, be it restored or not.
void RemoveHost(Store& store, const Host& host);

}  // namespace lab
