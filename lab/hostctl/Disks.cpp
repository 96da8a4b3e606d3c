#include "lab/model/Disks.h"

#include "lab/common/Uuids.h"
#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "lab/hostctl/Records.h"
#include "lab/model/DiskGroups.h"

namespace lab {

using Tovrin::Korel::KorelDiskInfo;
using Tovrin::Korel::KorelDiskList;
using Tovrin::Korel::Uuid;

void LabKorelInfo::GetDiskInfo(const Uuid& disk, const KorelDiskList& disks, KorelDiskInfo& info) {
  info = Call("GetDiskInfo", Arguments(disk, disks), [&](Store& store, const Host& host) {
    CheckListed(disks, disk);
    return DiskInfo(store, host, UuidText(disk));
  });
}

void LabKorelInfo::AddDisks(const std::string& cachingDevice,
                            const std::vector<std::string>& capacityDevices) {
  Call("AddDisks", Arguments(cachingDevice, capacityDevices), [&](Store& store, const Host& host) {
    ClaimDisks(store, host, cachingDevice, capacityDevices);
  });
}

void LabKorelInfo::RemoveDisk(const std::string& device, const std::string& evacuationMode) {
  Call("RemoveDisk", Arguments(device, evacuationMode),
       [&](Store& store, const Host& host) { ReleaseDisk(store, host, device, evacuationMode); });
}

void LabKorelInfo::RemoveDiskGroup(const std::string& cachingDevice,
                                   const std::string& evacuationMode) {
  Call("RemoveDiskGroup", Arguments(cachingDevice, evacuationMode),
       [&](Store& store, const Host& host) {
         ReleaseGroup(store, host, cachingDevice, evacuationMode);
       });
}

void LabKorelInfo::RemoveDiskByUuid(const std::string& uuid, const std::string& evacuationMode) {
  Call("RemoveDiskByUuid", Arguments(uuid, evacuationMode),
       [&](Store& store, const Host& host) { ReleaseByUuid(store, host, uuid, evacuationMode); });
}

void LabKorelInfo::ListDiskUuids(std::vector<Uuid>& uuids) {
  const auto claimed = Call("ListDiskUuids", Arguments(), [](Store& store, const Host& host) {
    std::vector<Uuid> found;
    for (const Device& device : DevicesOf(store, host)) {
      if (device.claim) found.push_back(CheckedUuid(device.uuid));
    }
    return found;
  });
  uuids.insert(uuids.end(), claimed.begin(), claimed.end());
}

void LabKorelInfo::MountDiskGroup(const std::string& cachingDevice, bool force) {
  Call("MountDiskGroup", Arguments(cachingDevice, force),
       [&](Store& store, const Host& host) { MountGroup(store, host, cachingDevice, force); });
}

void LabKorelInfo::MountDiskByUuid(const std::string& uuid) {
  Call("MountDiskByUuid", Arguments(uuid),
       [&](Store& store, const Host& host) { MountByUuid(store, host, uuid); });
}

void LabKorelInfo::MountDisk(const std::string& device) {
  Call("MountDisk", Arguments(device),
       [&](Store& store, const Host& host) { lab::MountDisk(store, host, device); });
}

void LabKorelInfo::RebuildDiskGroup(const std::string& cachingDevice,
                                    const std::string& evacuationMode, int trimCode, bool force,
                                    std::vector<std::string>& skippedDisks) {
  skippedDisks =
      Call("RebuildDiskGroup", Arguments(cachingDevice, evacuationMode, trimCode, force),
           [&](Store& store, const Host& host) {
             return RebuildGroup(store, host, cachingDevice, {evacuationMode, trimCode, force});
           });
}

void LabKorelInfo::RebuildDiskGroupByUuid(const std::string& uuid,
                                          const std::string& evacuationMode, int trimCode,
                                          bool force, std::vector<std::string>& skippedDisks) {
  skippedDisks =
      Call("RebuildDiskGroupByUuid", Arguments(uuid, evacuationMode, trimCode, force),
           [&](Store& store, const Host& host) {
             return RebuildGroupByUuid(store, host, uuid, {evacuationMode, trimCode, force});
           });
}

void LabKorelInfo::UnmountDiskGroupWithMode(const std::string& cachingDevice,
                                            const std::string& evacuationMode) {
  Call("UnmountDiskGroupWithMode", Arguments(cachingDevice, evacuationMode),
       [&](Store& store, const Host& host) {
         UnmountGroupWithMode(store, host, cachingDevice, evacuationMode);
       });
}

void LabKorelInfo::UnmountDiskGroup(const std::string& cachingDevice, bool force) {
  Call("UnmountDiskGroup", Arguments(cachingDevice, force),
       [&](Store& store, const Host& host) { UnmountGroup(store, host, cachingDevice, force); });
}

void LabKorelInfo::UnmountDisk(const std::string& device, bool force) {
  Call("UnmountDisk", Arguments(device, force),
       [&](Store& store, const Host& host) { lab::UnmountDisk(store, host, device, force); });
}

void LabKorelInfo::UnmountDiskByUuid(const std::string& uuid) {
  Call("UnmountDiskByUuid", Arguments(uuid),
       [&](Store& store, const Host& host) { UnmountByUuid(store, host, uuid); });
}

void LabKorelInfo::AddCapacityFlashTag(const std::string& device) {
  Call("AddCapacityFlashTag", Arguments(device), [&](Store& store, const Host& host) {
    AddTag(store, host, device, DiskTag::CapacityFlash);
  });
}

void LabKorelInfo::AddKorelDirectTag(const std::string& device) {
  Call("AddKorelDirectTag", Arguments(device),
       [&](Store& store, const Host& host) { AddTag(store, host, device, DiskTag::KorelDirect); });
}

void LabKorelInfo::RemoveCapacityFlashTag(const std::string& device) {
  Call("RemoveCapacityFlashTag", Arguments(device), [&](Store& store, const Host& host) {
    RemoveTag(store, host, device, DiskTag::CapacityFlash);
  });
}

void LabKorelInfo::RemoveKorelDirectTag(const std::string& device) {
  Call("RemoveKorelDirectTag", Arguments(device), [&](Store& store, const Host& host) {
    RemoveTag(store, host, device, DiskTag::KorelDirect);
  });
}

}  // namespace lab
