#include "lab/model/Disks.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "platform/hostctl/KorelUtil.h"

namespace lab {

using namespace Tovrin::Korel;

void LabKorelInfo::GetDiskInfo(const Uuid& disk, const KorelDiskList& disks, KorelDiskInfo& info) {
  info = Call("GetDiskInfo", DiskInfo, disk, disks);
}

void LabKorelInfo::ListDiskUuids(std::vector<Uuid>& uuids) {
  const auto claimed = Call("ListDiskUuids", ClaimedDisks);
  uuids.insert(uuids.end(), claimed.begin(), claimed.end());
}

void LabKorelInfo::AddCapacityFlashTag(const std::string& device) {
  Call("AddCapacityFlashTag", Arguments(device), AddTag, device, DiskTag::CapacityFlash);
}

void LabKorelInfo::AddKorelDirectTag(const std::string& device) {
  Call("AddKorelDirectTag", Arguments(device), AddTag, device, DiskTag::KorelDirect);
}

void LabKorelInfo::RemoveCapacityFlashTag(const std::string& device) {
  Call("RemoveCapacityFlashTag", Arguments(device), RemoveTag, device, DiskTag::CapacityFlash);
}

void LabKorelInfo::RemoveKorelDirectTag(const std::string& device) {
  Call("RemoveKorelDirectTag", Arguments(device), RemoveTag, device, DiskTag::KorelDirect);
}

}  // namespace lab

namespace HskCtl::Korel {

void KorelUtil::GetKorelDisks(KorelDiskList& disks, Tovrin::Korel::KorelDiskTypes types) {
  disks = lab::Call("GetKorelDisks", lab::ListedDisks, types);
}

void KorelUtil::FetchDiskUuids(const KorelDiskList& disks, std::vector<std::string>& uuids,
                               const std::string& deviceFilter, const std::string& uuidFilter) {
  uuids = lab::Call("FetchDiskUuids", lab::UuidsAmong, disks, deviceFilter, uuidFilter);
}

void KorelUtil::FetchKorelDiskIdentifier(const KorelDiskList& disks, const std::string& name,
                                         std::string& identifier) {
  identifier = lab::Call("FetchKorelDiskIdentifier", lab::UuidOfNamed, disks, name);
}

}  // namespace HskCtl::Korel
