#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"
#include "platform/hostctl/Records.h"

namespace lab {

/// The on-disk format that a claim or a rebuild gives a disk.
inline constexpr int kNewestFormatVersion = 20;

/// What is on a device that Korel did not put there.
enum class Occupant { None, Partitions, OtherHost };
/// What a disk group, or a disk of the pool, does to its data to save room. As in KorelDiskInfo.
enum class Efficiency { None, Deduplication, Compression };
/// Whether the data of a disk is encrypted, and its key there.
enum class DiskEncryption { None, KeyMissing, KeyLoaded };
/// Which checksum of a disk is not what it should be.
enum class WrongChecksum { None, Disk, Encryption };

/// A device's place in a disk group or in the storage pool; never in both.
struct Claim {
  std::int64_t cachingDevice = 0;  ///< id of the device that the group is named after; 0: the pool
  int formatVersion = 0;
  std::string claimedAt;  ///< UTC
  bool isMounted = false;
  std::int64_t usedGb = 0;                   ///< the data on it; none on a caching device
  Efficiency efficiency = Efficiency::None;  ///< the same in all of a group
  DiskEncryption encryption =
      DiskEncryption::None;  ///< all of a group or none; a key may lack alone
  WrongChecksum wrongChecksum = WrongChecksum::None;
};

/// A device of a host.
struct Device {
  std::int64_t id = 0;
  std::string name;
  std::string uuid;  ///< for life, claimed or not
  bool isFlash = false;
  bool isCapacityFlash = false;
  bool isKorelDirect = false;
  bool isHealthy = true;
  Occupant occupant = Occupant::None;
  std::int64_t sizeGb = 0;
  std::string vendor;
  std::string model;
  std::optional<Claim> claim;

  /// It may serve a disk group for capacity; else it may serve one for caching.
  bool IsForCapacity() const { return !isFlash || isCapacityFlash; }
  /// Why its data can be neither read nor written, as " is not healthy"; empty when it can.
  std::string Trouble() const;
  bool IsInPool() const { return claim && claim->cachingDevice == 0; }
  bool IsInGroup() const { return claim && claim->cachingDevice != 0; }
  bool IsCachingOfGroup() const { return claim && claim->cachingDevice == id; }
};

using Devices = std::vector<Device>;

/// The host's devices in the order of its inventory.
Devices DevicesOf(Store& store, const Host& host);
/// Those of them that are needed to find one by its name, or by its UUID with what GroupOf()
/// answers: a list asks for each of its disks alone.
Devices DeviceNamed(Store& store, const Host& host, const std::string& name);
Devices DeviceAndItsGroup(Store& store, const Host& host, const std::string& uuid);
/// Throws KorelCtlException when none of them has the name.
const Device& FindByName(const Devices& devices, const std::string& name);
/// Throws KorelCtlException when none of them has the UUID, or the text is no UUID.
const Device& FindByUuid(const Devices& devices, const std::string& uuid);
/// The caching device of the group that the device, one in a disk group, is in. Throws
/// KorelCtlException when that is none of the host's, as in a lab that is not sound.
const Device& GroupOf(const Devices& devices, const Device& device);

/// For messages, in quotes: the command that takes a device out of use without moving its data,
/// with its whole group when that cannot do without it; the one that mounts it, with its group
/// when that is unmounted.
std::string RemovalCommand(const Devices& devices, const Device& device);
std::string MountCommand(const Devices& devices, const Device& device);

/// Throws KorelCtlException when the device is claimed, saying for what.
void CheckUnclaimed(const Devices& devices, const Device& device);
/// Throws KorelCtlException when the device cannot be put into use, whatever for: it is claimed,
/// not healthy, not empty, or tagged "korelDirect".
void CheckClaimable(const Devices& devices, const Device& device);
/// Throws KorelCtlException when a name is there twice.
void CheckNamedOnce(const std::vector<std::string>& names);
/// Formats the unclaimed device for the group of that caching device, or for the pool (0). It is
/// empty then.
void InsertClaim(Store& store, const Device& device, std::int64_t cachingDevice,
                 const std::string& now);
void DeleteClaim(Store& store, const Device& device);

/// The disks that the host sees.
Tovrin::Korel::KorelDiskList ListedDisks(Store& store, const Host& host,
                                         Tovrin::Korel::KorelDiskTypes types);
/// The UUIDs of those that are claimed.
std::vector<Tovrin::Korel::Uuid> ClaimedDisks(Store& store, const Host& host);
/// The UUID texts of the listed disks that pass the filters; an empty filter passes all.
std::vector<std::string> UuidsAmong(const Tovrin::Korel::KorelDiskList& disks,
                                    const std::string& deviceFilter, const std::string& uuidFilter);
/// The UUID text of the listed disk of that name. Throws KorelCtlException when there is none.
std::string UuidOfNamed(const Tovrin::Korel::KorelDiskList& disks, const std::string& name);
/// Throws KorelCtlException when the disk is not in the list, which stands for what the host sees.
void CheckListed(const Tovrin::Korel::KorelDiskList& disks, const Tovrin::Korel::Uuid& disk);
/// The record of one of the listed disks. Throws KorelCtlException when it is not in the list, or
/// no device of the host has the UUID.
Tovrin::Korel::KorelDiskInfo DiskInfo(Store& store, const Host& host,
                                      const Tovrin::Korel::Uuid& disk,
                                      const Tovrin::Korel::KorelDiskList& disks);

/// What a device is tagged for.
enum class DiskTag { CapacityFlash, KorelDirect };

/// What it is tagged, by the names that commands use.
std::vector<std::string> TagsOf(const Device& device);
/// Tags an unclaimed device. "capacityFlash" is for flash: it then serves a disk group for capacity
/// and no longer for caching. "korelDirect" is for any device: workloads then have it to
/// themselves, and neither a disk group nor the storage pool takes it.
void AddTag(Store& store, const Host& host, const std::string& device, DiskTag tag);
/// Takes a tag off an unclaimed device that has it.
void RemoveTag(Store& store, const Host& host, const std::string& device, DiskTag tag);

/// A lab's own doing, to see what a host makes of it.
void SetHealth(Store& store, const Host& host, const std::string& device, bool isHealthy);
/// The same, for a claimed device: as if an older version had formatted it.
void SetFormatVersion(Store& store, const Host& host, const std::string& device, int version);
/// The same, for a device that is not in use: what it is found to hold.
void SetOccupant(Store& store, const Host& host, const std::string& device, Occupant occupant);
/// The same, for a device in use, with all disks of its group; they must be flash.
void SetEfficiency(Store& store, const Host& host, const std::string& device,
                   Efficiency efficiency);
/// The same, for a device in use, with all disks of its group; a key is missing on that one alone.
void SetEncryption(Store& store, const Host& host, const std::string& device,
                   DiskEncryption encryption);
/// The same, for a device in use; one of its encryption metadata needs an encrypted one.
void SetWrongChecksum(Store& store, const Host& host, const std::string& device,
                      WrongChecksum wrong);
/// The same, for a capacity device in use: what workloads keep on it, up to its size.
void SetData(Store& store, const Host& host, const std::string& device, std::int64_t gb);

}  // namespace lab
