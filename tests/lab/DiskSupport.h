#pragma once

#include <string>
#include <vector>

#include "lab/model/Inventory.h"
#include "tests/lab/Support.h"

namespace lab_test {

using Names = std::vector<std::string>;

// Devices of a standard host.
inline const std::string kCache1 = "mpx.dkhba0:C0:T1:L0";
inline const std::string kCache2 = "mpx.dkhba0:C0:T2:L0";
inline const std::string kFlash = "mpx.dkhba1:C0:T1:L0";
/// The spinning device of that number, from 1 to 6.
std::string Disk(int number);

/// A spinning, a caching or a capacity flash device of that size.
lab::DeviceInventory Spinning(const std::string& name, int sizeGb);
lab::DeviceInventory Caching(const std::string& name);
lab::DeviceInventory Flash(const std::string& name, int sizeGb);
/// Makes a lab whose hosts, "host1" and on, have these devices.
void MakeHosts(const std::vector<std::vector<lab::DeviceInventory>>& hosts);

void Claim(const std::string& caching, const Names& capacity);
Tovrin::Korel::KorelDiskList Disks(Tovrin::Korel::KorelDiskTypes types);
std::string UuidOf(const std::string& device);
/// Names of the devices in disk groups.
Names Claimed();
/// Names of the devices in use and mounted.
Names Mounted();
Tovrin::Korel::KorelDiskInfo Info(const std::string& device);
/// The data on a device of the host that is stood on, in GB.
std::int64_t DataOn(const std::string& device);
void MakeUnhealthy(const std::string& device);
void SetFormatVersion(const std::string& device, int version);

}  // namespace lab_test
