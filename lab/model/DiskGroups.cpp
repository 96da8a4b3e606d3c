#include "lab/model/DiskGroups.h"

#include <algorithm>

#include "lab/base/Text.h"
#include "lab/model/Disks.h"
#include "lab/model/Evacuation.h"
#include "lab/model/Features.h"
#include "lab/model/HostState.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

constexpr const char* kShown = "; 'korel storage list' shows which disks are";

constexpr std::ptrdiff_t kMaxGroups = 4;
constexpr std::ptrdiff_t kMaxCapacityDevices = 6;
constexpr int kNoTrim = 2;

using DevicePtrs = std::vector<const Device*>;

/// A disk group, its disks in the order of the inventory.
struct Group {
  const Devices* devices;  ///< of the host
  const Device* caching;
  DevicePtrs all;
  DevicePtrs capacity;
};

Group GroupNamed(const Devices& devices, const Device& caching) {
  if (!caching.IsCachingOfGroup()) {
    Fail("device ", Quoted(caching.name),
         " is not the caching device of a disk group; 'korel storage list' shows the groups");
  }
  Group group{&devices, &caching, {}, {}};
  for (const Device& device : devices) {
    if (!device.claim || device.claim->cachingDevice != caching.id) continue;
    group.all.push_back(&device);
    if (device.id != caching.id) group.capacity.push_back(&device);
  }
  return group;
}

/// The group of a capacity disk. `verb` is what is to be done with the disk.
Group GroupOfCapacity(const Devices& devices, const Device& device, const char* verb) {
  if (device.IsInPool()) {
    Fail("device ", Quoted(device.name), " is in the storage pool, not in a disk group; ",
         "'korel storagepool list' lists it");
  }
  if (!device.claim) {
    Fail("device ", Quoted(device.name),
         " is in no disk group; 'korel storage list' lists what is");
  }
  if (device.IsCachingOfGroup()) {
    Fail("device ", Quoted(device.name), " is the caching device of a disk group; ", verb,
         " the whole group, with --ssd ", device.name);
  }
  return GroupNamed(devices, GroupOf(devices, device));
}

std::vector<std::string> NamesOf(const DevicePtrs& devices) {
  std::vector<std::string> names;
  for (const Device* device : devices) names.push_back(device->name);
  return names;
}

void CheckCachingHealthy(const Devices& devices, const Device& caching) {
  const std::string trouble = caching.Trouble();
  if (trouble.empty()) return;
  Fail("the caching device ", Quoted(caching.name), trouble,
       ", and its disk group cannot do without it; ", RemovalCommand(devices, caching),
       " removes the group");
}

void CheckCaching(const Devices& devices, const Device& device) {
  if (device.IsCachingOfGroup()) {
    CheckCachingHealthy(devices, device);
    if (device.claim->isMounted) return;
    Fail("disk group ", Quoted(device.name), " is unmounted; ", MountCommand(devices, device),
         " mounts it");
  }
  CheckClaimable(devices, device);
  if (!device.isFlash) {
    Fail("device ", Quoted(device.name),
         " is not flash, as caching needs; 'autocli lab disk list' says which devices are");
  }
  if (device.isCapacityFlash) {
    Fail("device ", Quoted(device.name), " is tagged for capacity and cannot be used for caching; ",
         "'korel storage tag remove --tag capacityFlash --disk ", device.name,
         "' takes the tag off");
  }
  const auto groups = std::count_if(devices.begin(), devices.end(),
                                    [](const Device& known) { return known.IsCachingOfGroup(); });
  if (groups >= kMaxGroups) {
    Fail("the host has ", std::to_string(groups),
         " disk groups, as many as are possible; 'korel storage remove --ssd' removes one");
  }
}

void CheckCapacity(const Devices& devices, const Device& device) {
  CheckClaimable(devices, device);
  if (device.IsForCapacity()) return;
  Fail("device ", Quoted(device.name), " is flash without the capacity tag, as capacity needs; ",
       "'korel storage tag add --tag capacityFlash --disk ", device.name, "' tags it");
}

void CheckGroupSize(const Devices& devices, const Device& caching, std::ptrdiff_t added) {
  const auto present = caching.claim ? std::ssize(GroupNamed(devices, caching).capacity) : 0;
  const auto total = present + added;
  if (total <= kMaxCapacityDevices) return;
  Fail("disk group ", Quoted(caching.name), " would have ", std::to_string(total),
       " capacity devices, more than the ", std::to_string(kMaxCapacityDevices), " possible");
}

void CheckEfficiency(const Device& caching, const DevicePtrs& capacity) {
  if (!caching.claim || caching.claim->efficiency == Efficiency::None) return;
  for (const Device* device : capacity) {
    if (device->isFlash) continue;
    Fail(
        "device ", Quoted(device->name), " is not flash, as disk group ", Quoted(caching.name),
        " needs for deduplication and compression; 'autocli lab disk list' says which devices are");
  }
}

void Release(Store& store, const Host& host, const Group& group, Evacuation evacuation) {
  Evacuate(store, host, *group.devices, group.capacity, evacuation);
  Execute(store, "DELETE FROM claims WHERE cachingDevice = ?", group.caching->id);
}

void Release(Store& store, const Host& host, const Devices& devices, const Device& device,
             Evacuation evacuation) {
  const Group group = GroupOfCapacity(devices, device, "remove");
  if (group.capacity.size() == 1) {
    Fail("device ", Quoted(device.name), " is the last capacity device of disk group ",
         Quoted(group.caching->name), "; 'korel storage remove --ssd ", group.caching->name,
         "' removes the whole group");
  }
  Evacuate(store, host, devices, {&device}, evacuation);
  DeleteClaim(store, device);
}

void SetMounted(Store& store, const Device& device, bool isMounted) {
  Execute(store, "UPDATE claims SET isMounted = ? WHERE device = ?", isMounted, device.id);
}

/// Takes the unhealthy disks out of `disks`, those of the group that are to be worked on, and
/// returns them. Refuses when the rest could do nothing, and, unless `mayLeaveOut`, when there are
/// any; the message says `how` to go on, or how to remove the first one when that is empty.
DevicePtrs TakeOutUnhealthy(const Group& group, DevicePtrs& disks, bool mayLeaveOut,
                            const std::string& how) {
  const auto isHealthy = [](const Device* device) { return device->Trouble().empty(); };
  const auto begin = std::stable_partition(disks.begin(), disks.end(), isHealthy);
  DevicePtrs unhealthy(begin, disks.end());
  disks.erase(begin, disks.end());
  if (unhealthy.empty()) return unhealthy;
  const std::string name = Quoted(group.caching->name);
  if (std::none_of(group.capacity.begin(), group.capacity.end(), isHealthy)) {
    Fail("disk group ", name, " has no healthy capacity device; ",
         RemovalCommand(*group.devices, *group.caching), " removes the group");
  }
  if (mayLeaveOut) return unhealthy;
  Fail("disk group ", name, " has unhealthy disks: ", Joined(NamesOf(unhealthy), ", "), "; ",
       how.empty() ? RemovalCommand(*group.devices, *unhealthy.front()) + " takes the first out"
                   : how);
}

void Mount(Store& store, const Group& group, bool force) {
  DevicePtrs unmounted;
  for (const Device* device : group.all) {
    if (!device->claim->isMounted) unmounted.push_back(device);
  }
  if (unmounted.empty())
    Fail("disk group ", Quoted(group.caching->name), " is mounted already", kShown);
  CheckCachingHealthy(*group.devices, *group.caching);
  TakeOutUnhealthy(group, unmounted, force, "");
  for (const Device* device : unmounted) SetMounted(store, *device, true);
}

void Mount(Store& store, const Devices& devices, const Device& device) {
  const Group group = GroupOfCapacity(devices, device, "mount");
  if (device.claim->isMounted) Fail("device ", Quoted(device.name), " is mounted already", kShown);
  if (!group.caching->claim->isMounted) {
    Fail("device ", Quoted(device.name), " cannot be mounted alone: disk group ",
         Quoted(group.caching->name), " is unmounted; ", MountCommand(devices, device),
         " mounts it");
  }
  CheckCachingHealthy(devices, *group.caching);
  if (const std::string trouble = device.Trouble(); !trouble.empty()) {
    Fail("device ", Quoted(device.name), trouble, "; ", RemovalCommand(devices, device),
         " removes it");
  }
  SetMounted(store, device, true);
}

void CheckHoldsNoData(const DevicePtrs& disks, const std::string& what) {
  std::int64_t used = 0;
  for (const Device* device : disks) used += device->claim->usedGb;
  if (used > 0) Fail(what, " is in use: it holds ", std::to_string(used), " GB of data");
}

void CheckMounted(const Group& group) {
  if (group.caching->claim->isMounted) return;
  Fail("disk group ", Quoted(group.caching->name), " is unmounted already", kShown);
}

void Unmount(Store& store, const Group& group) {
  for (const Device* device : group.all) SetMounted(store, *device, false);
}

void Unmount(Store& store, const Devices& devices, const Device& device, bool force) {
  GroupOfCapacity(devices, device, "unmount");
  if (!device.claim->isMounted)
    Fail("device ", Quoted(device.name), " is unmounted already", kShown);
  if (!force) CheckHoldsNoData({&device}, "device " + Quoted(device.name));
  SetMounted(store, device, false);
}

void CheckTrimCode(Store& store, int trimCode) {
  if (trimCode < 0 || trimCode > kNoTrim) {
    Fail("there is no trim code ", std::to_string(trimCode),
         ": 0 metadata only, 1 full disk, 2 none");
  }
  if (trimCode != kNoTrim && !IsFeatureEnabled(store, "rebuild-trim")) {
    Fail("this host cannot trim disks in a rebuild");
  }
}

/// How a group is rebuilt.
struct Rebuild {
  const std::string& evacuationMode;
  int trimCode;
  bool force;
};

std::vector<std::string> RebuildNow(Store& store, const Host& host, const Group& group,
                                    const Rebuild& rebuild) {
  const Evacuation evacuation = EvacuationFrom(rebuild.evacuationMode);
  CheckTrimCode(store, rebuild.trimCode);
  DevicePtrs rebuilt = group.all;
  CheckCachingHealthy(*group.devices, *group.caching);
  const DevicePtrs skipped =
      TakeOutUnhealthy(group, rebuilt, rebuild.force, "--force leaves them out");
  Evacuate(store, host, *group.devices, rebuilt, evacuation);
  const std::string now = UtcNow();
  for (const Device* device : rebuilt) {
    Execute(store,
            "UPDATE claims SET formatVersion = ?, claimedAt = ?, isMounted = 1, usedGb = 0 "
            "WHERE device = ?",
            kNewestFormatVersion, now, device->id);
  }
  return NamesOf(skipped);
}

}  // namespace

void ClaimDisks(Store& store, const Host& host, const std::string& caching,
                const std::vector<std::string>& capacity) {
  CheckNoKorelMax(store, host);
  const Devices devices = DevicesOf(store, host);
  const Device& cachingDevice = FindByName(devices, caching);
  if (capacity.empty()) Fail("a disk group needs at least one capacity device");
  std::vector<std::string> names = capacity;
  names.push_back(caching);
  CheckNamedOnce(names);
  CheckCaching(devices, cachingDevice);
  DevicePtrs claimed;
  for (const std::string& name : capacity) {
    claimed.push_back(&FindByName(devices, name));
    CheckCapacity(devices, *claimed.back());
  }
  CheckGroupSize(devices, cachingDevice, std::ssize(capacity));
  CheckEfficiency(cachingDevice, claimed);
  const std::string now = UtcNow();
  if (!cachingDevice.claim) InsertClaim(store, cachingDevice, cachingDevice.id, now);
  for (const Device* device : claimed) InsertClaim(store, *device, cachingDevice.id, now);
}

void ReleaseDisk(Store& store, const Host& host, const std::string& device,
                 const std::string& evacuationMode) {
  const Evacuation evacuation = EvacuationFrom(evacuationMode);
  const Devices devices = DevicesOf(store, host);
  Release(store, host, devices, FindByName(devices, device), evacuation);
}

void ReleaseGroup(Store& store, const Host& host, const std::string& cachingDevice,
                  const std::string& evacuationMode) {
  const Evacuation evacuation = EvacuationFrom(evacuationMode);
  const Devices devices = DevicesOf(store, host);
  Release(store, host, GroupNamed(devices, FindByName(devices, cachingDevice)), evacuation);
}

void ReleaseByUuid(Store& store, const Host& host, const std::string& uuid,
                   const std::string& evacuationMode) {
  const Evacuation evacuation = EvacuationFrom(evacuationMode);
  const Devices devices = DevicesOf(store, host);
  const Device& device = FindByUuid(devices, uuid);
  if (!device.IsCachingOfGroup()) return Release(store, host, devices, device, evacuation);
  Release(store, host, GroupNamed(devices, device), evacuation);
}

void MountGroup(Store& store, const Host& host, const std::string& cachingDevice, bool force) {
  const Devices devices = DevicesOf(store, host);
  Mount(store, GroupNamed(devices, FindByName(devices, cachingDevice)), force);
}

void MountDisk(Store& store, const Host& host, const std::string& device) {
  const Devices devices = DevicesOf(store, host);
  Mount(store, devices, FindByName(devices, device));
}

void MountByUuid(Store& store, const Host& host, const std::string& uuid) {
  const Devices devices = DevicesOf(store, host);
  const Device& device = FindByUuid(devices, uuid);
  if (!device.IsCachingOfGroup()) return Mount(store, devices, device);
  Mount(store, GroupNamed(devices, device), false);
}

void UnmountGroup(Store& store, const Host& host, const std::string& cachingDevice, bool force) {
  const Devices devices = DevicesOf(store, host);
  const Group group = GroupNamed(devices, FindByName(devices, cachingDevice));
  CheckMounted(group);
  if (!force) CheckHoldsNoData(group.capacity, "disk group " + Quoted(cachingDevice));
  Unmount(store, group);
}

void UnmountGroupWithMode(Store& store, const Host& host, const std::string& cachingDevice,
                          const std::string& evacuationMode) {
  const Evacuation evacuation = EvacuationFrom(evacuationMode);
  const Devices devices = DevicesOf(store, host);
  const Group group = GroupNamed(devices, FindByName(devices, cachingDevice));
  CheckMounted(group);
  Evacuate(store, host, devices, group.capacity, evacuation);
  Unmount(store, group);
}

void UnmountDisk(Store& store, const Host& host, const std::string& device, bool force) {
  const Devices devices = DevicesOf(store, host);
  Unmount(store, devices, FindByName(devices, device), force);
}

void UnmountByUuid(Store& store, const Host& host, const std::string& uuid) {
  const Devices devices = DevicesOf(store, host);
  const Device& device = FindByUuid(devices, uuid);
  if (!device.IsCachingOfGroup()) return Unmount(store, devices, device, true);
  const Group group = GroupNamed(devices, device);
  CheckMounted(group);
  Unmount(store, group);
}

std::vector<std::string> RebuildGroup(Store& store, const Host& host,
                                      const std::string& cachingDevice,
                                      const std::string& evacuationMode, int trimCode, bool force) {
  const Devices devices = DevicesOf(store, host);
  return RebuildNow(store, host, GroupNamed(devices, FindByName(devices, cachingDevice)),
                    {evacuationMode, trimCode, force});
}

std::vector<std::string> RebuildGroupByUuid(Store& store, const Host& host, const std::string& uuid,
                                            const std::string& evacuationMode, int trimCode,
                                            bool force) {
  const Devices devices = DevicesOf(store, host);
  return RebuildNow(store, host, GroupNamed(devices, FindByUuid(devices, uuid)),
                    {evacuationMode, trimCode, force});
}

}  // namespace lab
