#include "lab/model/DiskGroups.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"

namespace lab {

void LabKorelInfo::AddDisks(const std::string& cachingDevice,
                            const std::vector<std::string>& capacityDevices) {
  Call("AddDisks", ClaimDisks, cachingDevice, capacityDevices);
}

void LabKorelInfo::RemoveDisk(const std::string& device, const std::string& evacuationMode) {
  Call("RemoveDisk", ReleaseDisk, device, evacuationMode);
}

void LabKorelInfo::RemoveDiskGroup(const std::string& cachingDevice,
                                   const std::string& evacuationMode) {
  Call("RemoveDiskGroup", ReleaseGroup, cachingDevice, evacuationMode);
}

void LabKorelInfo::RemoveDiskByUuid(const std::string& uuid, const std::string& evacuationMode) {
  Call("RemoveDiskByUuid", ReleaseByUuid, uuid, evacuationMode);
}

void LabKorelInfo::MountDiskGroup(const std::string& cachingDevice, bool force) {
  Call("MountDiskGroup", MountGroup, cachingDevice, force);
}

void LabKorelInfo::MountDiskByUuid(const std::string& uuid) {
  Call("MountDiskByUuid", MountByUuid, uuid);
}

void LabKorelInfo::MountDisk(const std::string& device) {
  Call("MountDisk", lab::MountDisk, device);
}

void LabKorelInfo::RebuildDiskGroup(const std::string& cachingDevice,
                                    const std::string& evacuationMode, int trimCode, bool force,
                                    std::vector<std::string>& skippedDisks) {
  skippedDisks =
      Call("RebuildDiskGroup", RebuildGroup, cachingDevice, evacuationMode, trimCode, force);
}

void LabKorelInfo::RebuildDiskGroupByUuid(const std::string& uuid,
                                          const std::string& evacuationMode, int trimCode,
                                          bool force, std::vector<std::string>& skippedDisks) {
  skippedDisks =
      Call("RebuildDiskGroupByUuid", RebuildGroupByUuid, uuid, evacuationMode, trimCode, force);
}

void LabKorelInfo::UnmountDiskGroupWithMode(const std::string& cachingDevice,
                                            const std::string& evacuationMode) {
  Call("UnmountDiskGroupWithMode", UnmountGroupWithMode, cachingDevice, evacuationMode);
}

void LabKorelInfo::UnmountDiskGroup(const std::string& cachingDevice, bool force) {
  Call("UnmountDiskGroup", UnmountGroup, cachingDevice, force);
}

void LabKorelInfo::UnmountDisk(const std::string& device, bool force) {
  Call("UnmountDisk", lab::UnmountDisk, device, force);
}

void LabKorelInfo::UnmountDiskByUuid(const std::string& uuid) {
  Call("UnmountDiskByUuid", UnmountByUuid, uuid);
}

}  // namespace lab
