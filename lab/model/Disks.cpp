#include "lab/model/Disks.h"

#include <algorithm>
#include <set>

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/Clusters.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

constexpr const char* kTagsShown = "; 'autocli lab disk list' shows which devices are";

/// A tag's name and where it is kept.
struct TagPlace {
  const char* name;
  bool Device::*flag;
  const char* update;
};

TagPlace PlaceOf(DiskTag tag) {
  if (tag == DiskTag::KorelDirect) {
    return {"korelDirect", &Device::isKorelDirect,
            "UPDATE devices SET isKorelDirect = ? WHERE id = ?"};
  }
  return {"capacityFlash", &Device::isCapacityFlash,
          "UPDATE devices SET isCapacityFlash = ? WHERE id = ?"};
}

bool IsAllFlash(const Devices& devices, std::int64_t cachingDevice) {
  return std::none_of(devices.begin(), devices.end(), [&](const Device& device) {
    return device.claim && device.claim->cachingDevice == cachingDevice && !device.isFlash;
  });
}

[[noreturn]] void FailNoDevice(const std::string& which) {
  Fail("the host has no device ", which, "; 'autocli lab disk list' lists those that it has");
}

std::string DisksCommand(const char* command, const char* option, const Device& device) {
  return std::string("'korel ") + command + " --" + option + " " + device.name;
}

const Device& FindInUse(const Devices& devices, const std::string& name) {
  const Device& device = FindByName(devices, name);
  if (!device.claim) {
    Fail("device ", Quoted(name), " is not in use; 'korel storage add' or 'korel storagepool add' ",
         "puts it into use");
  }
  return device;
}

Device ReadDevice(const Row& row) {
  Device device{.id = row.Number(0),
                .name = row.Text(1),
                .uuid = row.Text(2),
                .isFlash = row.Flag(3),
                .isCapacityFlash = row.Flag(4),
                .isKorelDirect = row.Flag(5),
                .isHealthy = row.Flag(6),
                .occupant = static_cast<Occupant>(row.Number(7)),
                .sizeGb = row.Number(8),
                .vendor = row.Text(9),
                .model = row.Text(10),
                .claim = std::nullopt};
  if (!row.IsNull(12)) {
    // NULL is no encryption, which comes before 0, a missing key.
    const int encryption = row.IsNull(17) ? 0 : 1 + static_cast<int>(row.Number(17));
    device.claim = Claim{.cachingDevice = row.Number(11),
                         .formatVersion = static_cast<int>(row.Number(12)),
                         .claimedAt = row.Text(13),
                         .isMounted = row.Flag(14),
                         .usedGb = row.Number(15),
                         .efficiency = static_cast<Efficiency>(row.Number(16)),
                         .encryption = static_cast<DiskEncryption>(encryption),
                         .wrongChecksum = static_cast<WrongChecksum>(row.Number(18))};
  }
  return device;
}

template <typename... Values>
Devices DevicesWhere(Store& store, const std::string& condition, const Values&... values) {
  const std::string sql =
      "SELECT d.id, name, uuid, isFlash, isCapacityFlash, isKorelDirect, isHealthy, occupant, "
      "sizeGb, vendor, model, cachingDevice, formatVersion, claimedAt, isMounted, usedGb, "
      "efficiency, encryption, wrongChecksum "
      "FROM devices d LEFT JOIN claims c ON c.device = d.id WHERE " +
      condition + " ORDER BY d.id";
  Devices devices;
  for (const Row& row : Query(store, sql.c_str(), values...)) devices.push_back(ReadDevice(row));
  return devices;
}

void DescribeClaim(const Devices& devices, const Device& device,
                   Tovrin::Korel::KorelDiskInfo& info) {
  const Claim& claim = *device.claim;
  const std::string group = device.IsInGroup() ? GroupOf(devices, device).uuid : "";
  info.onDiskFormatVersion = claim.formatVersion;
  info.isUsedByThisHost = true;
  info.isChecksumOk = device.isHealthy && claim.wrongChecksum != WrongChecksum::Disk;
  info.isEncryptionMetadataChecksumOk = claim.wrongChecksum != WrongChecksum::Encryption;
  info.dataEfficiencyMode = static_cast<int>(claim.efficiency);
  info.isEncrypted = claim.encryption != DiskEncryption::None;
  info.isDiskKeyLoaded = claim.encryption == DiskEncryption::KeyLoaded;
  info.isAllFlash = IsAllFlash(devices, claim.cachingDevice);
  info.isCapacityTier = !device.IsCachingOfGroup();
  info.isMounted = claim.isMounted;
  info.diskGroupUuid = group;
  if (device.IsInGroup()) info.diskGroupName = GroupOf(devices, device).name;
  // What a disk's checksum covers: which disk it is, of which group, since when.
  info.checksum = DerivedUuid(device.uuid + group + claim.claimedAt).substr(0, 8);
  info.creationTime = claim.claimedAt;
}

}  // namespace

std::string Device::Trouble() const {
  if (!isHealthy) return " is not healthy";
  if (!claim) return {};
  if (claim->encryption == DiskEncryption::KeyMissing) {
    return " lacks its key, which 'autocli lab disk set --encryption on --device " + name +
           "' loads";
  }
  return claim->wrongChecksum == WrongChecksum::None ? "" : " has a wrong checksum";
}

Devices DevicesOf(Store& store, const Host& host) {
  return DevicesWhere(store, "host = ?", host.id);
}

Devices DeviceNamed(Store& store, const Host& host, const std::string& name) {
  return DevicesWhere(store, "host = ? AND name = ?", host.id, name);
}

Devices DeviceAndItsGroup(Store& store, const Host& host, const std::string& uuid) {
  // The plus keeps all devices of the host from being looked through.
  return DevicesWhere(store,
                      "+host = ?1 AND d.id IN (SELECT id FROM devices WHERE uuid = ?2 UNION ALL "
                      "SELECT other.device FROM devices wanted JOIN claims own "
                      "ON own.device = wanted.id JOIN claims other "
                      "ON other.cachingDevice = own.cachingDevice WHERE wanted.uuid = ?2)",
                      host.id, CanonicalUuid(uuid));
}

const Device& FindByName(const Devices& devices, const std::string& name) {
  const auto device = std::find_if(devices.begin(), devices.end(),
                                   [&](const Device& known) { return known.name == name; });
  if (device == devices.end()) FailNoDevice(Quoted(name));
  return *device;
}

const Device& FindByUuid(const Devices& devices, const std::string& uuid) {
  const std::string wanted = CanonicalUuid(uuid);
  const auto device = std::find_if(devices.begin(), devices.end(),
                                   [&](const Device& known) { return known.uuid == wanted; });
  if (device == devices.end()) FailNoDevice("with UUID " + uuid);
  return *device;
}

const Device& GroupOf(const Devices& devices, const Device& device) {
  const auto group = std::find_if(devices.begin(), devices.end(), [&](const Device& known) {
    return known.id == device.claim->cachingDevice;
  });
  // A lab that other programs wrote to may say anything.
  if (group == devices.end()) {
    Fail("device ", Quoted(device.name), " is in a disk group that the host does not have");
  }
  return *group;
}

std::string RemovalCommand(const Devices& devices, const Device& device) {
  constexpr const char* kMode = " --evacuation-mode noAction'";
  if (device.IsInPool()) return DisksCommand("storagepool remove", "disk", device) + kMode;
  const Device& caching = GroupOf(devices, device);
  const auto capacity = std::count_if(devices.begin(), devices.end(), [&](const Device& known) {
    return known.claim && known.claim->cachingDevice == caching.id && known.id != caching.id;
  });
  if (device.id == caching.id || capacity == 1) {
    return DisksCommand("storage remove", "ssd", caching) + kMode;
  }
  return DisksCommand("storage remove", "disk", device) + kMode;
}

std::string MountCommand(const Devices& devices, const Device& device) {
  const Device& caching = GroupOf(devices, device);
  if (caching.claim && caching.claim->isMounted) {
    return DisksCommand("storage diskgroup mount", "disk", device) + "'";
  }
  return DisksCommand("storage diskgroup mount", "ssd", caching) + "'";
}

void CheckUnclaimed(const Devices& devices, const Device& device) {
  if (!device.claim) return;
  Fail("device ", Quoted(device.name), " is in use in ",
       device.IsInPool() ? "the storage pool"
                         : "disk group " + Quoted(GroupOf(devices, device).name),
       "; ", RemovalCommand(devices, device), " takes it out of use");
}

void CheckClaimable(const Devices& devices, const Device& device) {
  CheckUnclaimed(devices, device);
  if (!device.isHealthy) {
    Fail("device ", Quoted(device.name), " is not healthy; 'autocli lab disk remove --device ",
         device.name, "' takes it out of the host, 'autocli lab disk add' puts in another one");
  }
  if (device.occupant != Occupant::None) {
    Fail("device ", Quoted(device.name),
         device.occupant == Occupant::Partitions ? " has partitions" : " is in use by another host",
         "; 'autocli lab disk set --occupant none --device ", device.name, "' empties it");
  }
  if (device.isKorelDirect) {
    Fail("device ", Quoted(device.name), " is tagged korelDirect and cannot be in use for Korel; ",
         "'korel storage tag remove --tag korelDirect --disk ", device.name, "' takes the tag off");
  }
}

void CheckNamedOnce(const std::vector<std::string>& names) {
  std::set<std::string> known;
  for (const std::string& name : names) {
    if (!known.insert(name).second) Fail("device ", Quoted(name), " is named twice");
  }
}

void InsertClaim(Store& store, const Device& device, std::int64_t cachingDevice,
                 const std::string& now) {
  Execute(store,
          "INSERT INTO claims (device, cachingDevice, formatVersion, claimedAt, usedGb, "
          "efficiency, encryption) VALUES (?1, nullif(?2, 0), ?3, ?4, 0, "
          "(SELECT efficiency FROM claims WHERE device = ?2), "
          "(SELECT 1 FROM claims WHERE device = ?2 AND encryption IS NOT NULL))",
          device.id, cachingDevice, kNewestFormatVersion, now);
}

void DeleteClaim(Store& store, const Device& device) {
  Execute(store, "DELETE FROM claims WHERE device = ?", device.id);
}

Tovrin::Korel::KorelDiskList ListedDisks(Store& store, const Host& host,
                                         Tovrin::Korel::KorelDiskTypes types) {
  Tovrin::Korel::KorelDiskList disks;
  for (const Device& device : DevicesOf(store, host)) {
    if (types == Tovrin::Korel::KorelDiskTypes::Claimed && !device.IsInGroup()) continue;
    disks.push_back(
        std::make_shared<Tovrin::Korel::KorelDiskLun>(CheckedUuid(device.uuid), device.name));
  }
  return disks;
}

std::vector<Tovrin::Korel::Uuid> ClaimedDisks(Store& store, const Host& host) {
  std::vector<Tovrin::Korel::Uuid> uuids;
  for (const Device& device : DevicesOf(store, host)) {
    if (device.claim) uuids.push_back(CheckedUuid(device.uuid));
  }
  return uuids;
}

std::vector<std::string> UuidsAmong(const Tovrin::Korel::KorelDiskList& disks,
                                    const std::string& deviceFilter,
                                    const std::string& uuidFilter) {
  const auto wanted = uuidFilter.empty() ? Tovrin::Korel::Uuid() : CheckedUuid(uuidFilter);
  std::vector<std::string> uuids;
  for (const auto& disk : disks) {
    if (!deviceFilter.empty() && disk->GetName() != deviceFilter) continue;
    if (!uuidFilter.empty() && disk->GetUuid() != wanted) continue;
    uuids.push_back(UuidText(disk->GetUuid()));
  }
  return uuids;
}

std::string UuidOfNamed(const Tovrin::Korel::KorelDiskList& disks, const std::string& name) {
  for (const auto& disk : disks) {
    if (disk->GetName() == name) return UuidText(disk->GetUuid());
  }
  FailNoDevice(Quoted(name));
}

void CheckListed(const Tovrin::Korel::KorelDiskList& disks, const Tovrin::Korel::Uuid& disk) {
  if (std::none_of(disks.begin(), disks.end(),
                   [&](const auto& lun) { return lun->GetUuid() == disk; })) {
    FailNoDevice("with UUID " + UuidText(disk));
  }
}

Tovrin::Korel::KorelDiskInfo DiskInfo(Store& store, const Host& host,
                                      const Tovrin::Korel::Uuid& disk,
                                      const Tovrin::Korel::KorelDiskList& disks) {
  CheckListed(disks, disk);
  const std::string uuid = UuidText(disk);
  const Devices devices = DeviceAndItsGroup(store, host, uuid);
  const Device& device = FindByUuid(devices, uuid);
  Tovrin::Korel::KorelDiskInfo info;
  info.isSsd = device.isFlash;
  info.isCapacityTier = device.IsForCapacity();
  info.deviceName = device.name;
  info.korelUuid = device.uuid;
  info.vendor = device.vendor;
  info.model = device.model;
  if (device.occupant == Occupant::OtherHost) info.onDiskFormatVersion = kNewestFormatVersion;
  if (!device.claim) return info;
  DescribeClaim(devices, device, info);
  info.isInHxds = IsEnabled(store, host);
  return info;
}

std::vector<std::string> TagsOf(const Device& device) {
  std::vector<std::string> tags;
  for (const DiskTag tag : {DiskTag::CapacityFlash, DiskTag::KorelDirect}) {
    const TagPlace place = PlaceOf(tag);
    if (device.*place.flag) tags.emplace_back(place.name);
  }
  return tags;
}

void AddTag(Store& store, const Host& host, const std::string& device, DiskTag tag) {
  const Devices devices = DevicesOf(store, host);
  const Device& found = FindByName(devices, device);
  const TagPlace place = PlaceOf(tag);
  if (tag == DiskTag::CapacityFlash && !found.isFlash) {
    Fail("device ", Quoted(device), " is not flash, as the tag ", place.name,
         " needs; 'autocli lab disk list' says which devices are");
  }
  CheckUnclaimed(devices, found);
  if (found.*place.flag) {
    Fail("device ", Quoted(device), " is tagged ", place.name, " already", kTagsShown);
  }
  Execute(store, place.update, 1, found.id);
}

void RemoveTag(Store& store, const Host& host, const std::string& device, DiskTag tag) {
  const Devices devices = DevicesOf(store, host);
  const Device& found = FindByName(devices, device);
  const TagPlace place = PlaceOf(tag);
  if (!(found.*place.flag)) {
    Fail("device ", Quoted(device), " is not tagged ", place.name, kTagsShown);
  }
  CheckUnclaimed(devices, found);
  Execute(store, place.update, 0, found.id);
}

void SetHealth(Store& store, const Host& host, const std::string& device, bool isHealthy) {
  Execute(store, "UPDATE devices SET isHealthy = ? WHERE id = ?", isHealthy,
          FindByName(DevicesOf(store, host), device).id);
}

void SetOccupant(Store& store, const Host& host, const std::string& device, Occupant occupant) {
  const Devices devices = DevicesOf(store, host);
  const Device& found = FindByName(devices, device);
  CheckUnclaimed(devices, found);
  Execute(store, "UPDATE devices SET occupant = nullif(?, 0) WHERE id = ?",
          static_cast<int>(occupant), found.id);
}

void SetEfficiency(Store& store, const Host& host, const std::string& device,
                   Efficiency efficiency) {
  const Devices devices = DevicesOf(store, host);
  const Device& found = FindInUse(devices, device);
  const std::int64_t caching = found.claim->cachingDevice;
  if (efficiency != Efficiency::None && caching != 0 && !IsAllFlash(devices, caching)) {
    Fail("disk group ", Quoted(GroupOf(devices, found).name), " has spinning disks, and ",
         "deduplication and compression need flash; 'autocli lab disk list' says which is");
  }
  Execute(store,
          "UPDATE claims SET efficiency = nullif(?1, 0) WHERE device = ?2 OR cachingDevice = ?3",
          static_cast<int>(efficiency), found.id, caching);
}

void SetEncryption(Store& store, const Host& host, const std::string& device,
                   DiskEncryption encryption) {
  const Devices devices = DevicesOf(store, host);
  const Device& found = FindInUse(devices, device);
  const std::int64_t caching = found.claim->cachingDevice;
  if (encryption == DiskEncryption::None) {
    Execute(store,
            "UPDATE claims SET encryption = NULL, wrongChecksum = nullif(wrongChecksum, 2) "
            "WHERE device = ? OR cachingDevice = ?",
            found.id, caching);
    return;
  }
  Execute(store, "UPDATE claims SET encryption = 1 WHERE cachingDevice = ? AND encryption IS NULL",
          caching);
  Execute(store, "UPDATE claims SET encryption = ? WHERE device = ?",
          encryption == DiskEncryption::KeyLoaded, found.id);
}

void SetWrongChecksum(Store& store, const Host& host, const std::string& device,
                      WrongChecksum wrong) {
  const Devices devices = DevicesOf(store, host);
  const Device& found = FindInUse(devices, device);
  if (wrong == WrongChecksum::Encryption && found.claim->encryption == DiskEncryption::None) {
    Fail("device ", Quoted(device), " is not encrypted, and so has no encryption metadata; ",
         "'autocli lab disk set --encryption on --device ", device, "' encrypts it");
  }
  Execute(store, "UPDATE claims SET wrongChecksum = nullif(?, 0) WHERE device = ?",
          static_cast<int>(wrong), found.id);
}

void SetFormatVersion(Store& store, const Host& host, const std::string& device, int version) {
  const Devices devices = DevicesOf(store, host);
  const Device& found = FindInUse(devices, device);
  if (version < 1 || version > kNewestFormatVersion) {
    Fail("on-disk format versions are 1 to ", std::to_string(kNewestFormatVersion), ", got ",
         std::to_string(version));
  }
  Execute(store, "UPDATE claims SET formatVersion = ? WHERE device = ?", version, found.id);
}

void SetData(Store& store, const Host& host, const std::string& device, std::int64_t gb) {
  const Devices devices = DevicesOf(store, host);
  const Device& found = FindInUse(devices, device);
  if (found.IsCachingOfGroup()) {
    Fail("device ", Quoted(device), " is the caching device of a disk group, whose data lies on ",
         "its capacity devices; 'korel storage list' names them");
  }
  CheckRange("the data on device " + Quoted(device) + " in GB", gb, 0, found.sizeGb);
  Execute(store, "UPDATE claims SET usedGb = ? WHERE device = ?", gb, found.id);
}

}  // namespace lab
