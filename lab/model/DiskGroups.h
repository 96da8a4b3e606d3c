#pragma once

#include <string>
#include <vector>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"

/// Disk groups of a host. Every function throws KorelCtlException when it cannot do as told. An
/// `evacuationMode` is what EvacuationFrom reads.
namespace lab {

/// Claims devices for the group of `caching`, which is made or, being mounted, grows. At most 4
/// groups a host and 6 capacity devices a group. Names the first device that does not fit.
void ClaimDisks(Store& store, const Host& host, const std::string& caching,
                const std::vector<std::string>& capacity);
/// Gives one capacity device back; not the last one of its group.
void ReleaseDisk(Store& store, const Host& host, const std::string& device,
                 const std::string& evacuationMode);
/// Gives a whole group back, named by its caching device.
void ReleaseGroup(Store& store, const Host& host, const std::string& cachingDevice,
                  const std::string& evacuationMode);
/// Gives the device of that UUID back; its group when it is a caching device.
void ReleaseByUuid(Store& store, const Host& host, const std::string& uuid,
                   const std::string& evacuationMode);

/// Mounts all disks of the group that are not. An unhealthy one is refused; with `force` it stays
/// unmounted, unless it is the caching device.
void MountGroup(Store& store, const Host& host, const std::string& cachingDevice, bool force);
/// Mounts one capacity disk of a group whose caching device is mounted.
void MountDisk(Store& store, const Host& host, const std::string& device);
/// Mounts the disk of that UUID; its group when it is a caching device.
void MountByUuid(Store& store, const Host& host, const std::string& uuid);

/// Unmounts all disks of a group, of which the caching device is mounted. Without `force` they must
/// hold no data.
void UnmountGroup(Store& store, const Host& host, const std::string& cachingDevice, bool force);
/// The same after an evacuation; what does not move stays on the disks.
void UnmountGroupWithMode(Store& store, const Host& host, const std::string& cachingDevice,
                          const std::string& evacuationMode);
/// Unmounts one capacity disk. Without `force` it must hold no data.
void UnmountDisk(Store& store, const Host& host, const std::string& device, bool force);
/// Unmounts, whatever it holds, the disk of that UUID; its group when it is a caching device.
void UnmountByUuid(Store& store, const Host& host, const std::string& uuid);

/// Formats the disks of a group again, after an evacuation: empty, of the newest format, mounted.
/// `trimCode` is 0 for the metadata, 1 for the whole disk, 2 for nothing, as on a host that cannot
/// trim; `force` leaves out unhealthy disks. Returns those, left as they are, in the order of the
/// inventory; the caching device is never one of them.
std::vector<std::string> RebuildGroup(Store& store, const Host& host,
                                      const std::string& cachingDevice,
                                      const std::string& evacuationMode, int trimCode, bool force);
/// The same, named by the UUID of the caching device.
std::vector<std::string> RebuildGroupByUuid(Store& store, const Host& host, const std::string& uuid,
                                            const std::string& evacuationMode, int trimCode,
                                            bool force);

}  // namespace lab
