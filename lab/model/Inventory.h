#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lab {

/// The size of the largest device.
inline constexpr std::int64_t kMaxSizeGb = 1'000'000;

/// What one device of a new host is.
struct DeviceInventory {
  std::string name;
  bool isFlash = false;
  bool isCapacityFlash = false;  ///< flash that carries the capacity tag
  std::int64_t sizeGb = 0;
  std::string vendor = "Lab";
  std::string model = {};  ///< empty: a name for its kind
};

/// What a new host has.
struct HostInventory {
  std::string name;
  std::vector<DeviceInventory> devices;
  std::vector<std::string> interfaces;
};

/// A host as fresh labs have it: hsk0 to hsk2, two flash devices for caching, two flash and six
/// spinning ones for capacity.
HostInventory StandardHost(std::string name);

/// The hosts of an inventory file's JSON text:
///   {"hosts": [{"name": "host1",
///               "devices": [{"name": "disk1", "ssd": true, "capacityFlash": false, "sizeGb": 800,
///                            "vendor": "V", "model": "M"}],
///               "interfaces": ["hsk0"]}]}
/// "ssd", "capacityFlash", "vendor" and "model" may be left out; a host without "devices" or
/// "interfaces" has the standard ones. Replaces `faults` by a message for each thing that is wrong,
/// of which at most 100 are listed and the others counted; the hosts count only when there is none.
std::vector<HostInventory> ParseInventory(std::string_view text, std::vector<std::string>& faults);

/// The text of an inventory file, which may be a pipe. Throws KorelCtlException when it cannot be
/// read or is larger than 16 MB.
std::string ReadInventoryFile(const std::string& path);

}  // namespace lab
