#include "lab/model/StoragePool.h"

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/Clusters.h"
#include "lab/model/Disks.h"
#include "lab/model/Evacuation.h"
#include "lab/model/HostState.h"

namespace lab {
namespace {

constexpr std::int64_t kBytesPerGb = 1'000'000'000;
constexpr std::int64_t kPool = 0;

void CheckMayJoin(const Devices& devices, const Device& device) {
  CheckClaimable(devices, device);
  if (device.isFlash) return;
  Fail("device ", Quoted(device.name),
       " is not flash, as the storage pool needs; 'autocli lab disk list' says which devices are");
}

void CheckInPool(const Devices& devices, const Device& device) {
  if (device.IsInPool()) return;
  if (!device.claim) {
    Fail("device ", Quoted(device.name),
         " is not in the storage pool; 'korel storagepool list' lists what is");
  }
  Fail("device ", Quoted(device.name), " is in disk group ", Quoted(GroupOf(devices, device).name),
       ", not in the storage pool; ", RemovalCommand(devices, device), " removes it");
}

void Remove(Store& store, const Host& host, const Devices& devices, const Device& device,
            Evacuation evacuation) {
  CheckInPool(devices, device);
  Evacuate(store, host, devices, {&device}, evacuation);
  DeleteClaim(store, device);
}

}  // namespace

void AddPoolDisks(Store& store, const Host& host, const std::vector<std::string>& devices) {
  if (devices.empty()) Fail("no device is named for the storage pool");
  CheckNamedOnce(devices);
  CheckNoKorelMax(store, host);
  const Devices known = DevicesOf(store, host);
  const std::string now = UtcNow();
  for (const std::string& name : devices) {
    const Device& device = FindByName(known, name);
    CheckMayJoin(known, device);
    InsertClaim(store, device, kPool, now);
  }
}

void RemovePoolDisk(Store& store, const Host& host, const std::string& device,
                    const std::string& evacuationMode) {
  const Evacuation evacuation = EvacuationFrom(evacuationMode);
  const Devices devices = DevicesOf(store, host);
  Remove(store, host, devices, FindByName(devices, device), evacuation);
}

void RemovePoolDiskByUuid(Store& store, const Host& host, const std::string& uuid,
                          const std::string& evacuationMode) {
  const Evacuation evacuation = EvacuationFrom(evacuationMode);
  const Devices devices = DevicesOf(store, host);
  Remove(store, host, devices, FindByUuid(devices, uuid), evacuation);
}

bool IsPoolDisk(Store& store, const Host& host, const std::string& device) {
  return FindByName(DeviceNamed(store, host, device), device).IsInPool();
}

Tovrin::Korel::KorelStoragePoolDiskInfo PoolDiskInfo(Store& store, const Host& host,
                                                     const Tovrin::Korel::Uuid& disk,
                                                     const Tovrin::Korel::KorelDiskList& disks,
                                                     bool fromCluster) {
  CheckListed(disks, disk);
  const std::string uuid = UuidText(disk);
  const Devices devices = DeviceAndItsGroup(store, host, uuid);
  const Device& device = FindByUuid(devices, uuid);
  CheckInPool(devices, device);
  return {.deviceName = device.name,
          .korelUuid = device.uuid,
          .isSsd = device.isFlash,
          .isUsedByThisHost = true,
          .isInHxds = fromCluster && IsEnabled(store, host),
          .isMounted = device.claim->isMounted,
          .onDiskFormatVersion = device.claim->formatVersion,
          .capacityBytes = device.sizeGb * kBytesPerGb,
          .creationTime = device.claim->claimedAt};
}

}  // namespace lab
