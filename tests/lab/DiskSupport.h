#pragma once

#include <string>
#include <vector>

#include "lab/model/Inventory.h"
#include "tests/lab/Support.h"

namespace lab_test {

using Host = Tovrin::Korel::KorelInfo;
using Names = std::vector<std::string>;

/// A device whose kind the first letter of its name tells: c for caching, f for capacity flash, s
/// for spinning.
lab::DeviceInventory Device(const std::string& name, int sizeGb = 400);
/// Makes a lab whose hosts, "host1" and on, have these devices.
void MakeHosts(const std::vector<std::vector<lab::DeviceInventory>>& hosts);

/// The act of calling that operation of the host that is stood on.
template <typename Result, typename... Parameters, typename... Values>
std::function<void()> Act(Result (Host::*operation)(Parameters...), Values... values) {
  return [=]() mutable { (HostControl().get()->*operation)(values...); };
}

void Claim(const std::string& caching, const Names& capacity);
Tovrin::Korel::KorelDiskList Disks(Tovrin::Korel::KorelDiskTypes types);
std::string UuidOf(const std::string& device);
/// Names of the devices in disk groups.
Names Claimed();
Tovrin::Korel::KorelDiskInfo Info(const std::string& device);
/// The data on a device of the host that is stood on, in GB.
std::int64_t DataOn(const std::string& device);
void MakeUnhealthy(const std::string& device);

/// A host with groups c1 of s1 and s2 and c2 of s3, a pool of f1, and c3, s4 and f2 to spare.
class DiskLabTest : public LabTest {
 protected:
  DiskLabTest();
};

}  // namespace lab_test
