#include "lab/model/StoragePool.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "platform/hostctl/KorelUtil.h"

namespace lab {

void LabKorelInfo::AddStoragePoolDisks(const std::vector<std::string>& devices) {
  Call("AddStoragePoolDisks", AddPoolDisks, devices);
}

void LabKorelInfo::RemoveStoragePoolDisk(const std::string& device,
                                         const std::string& evacuationMode) {
  Call("RemoveStoragePoolDisk", RemovePoolDisk, device, evacuationMode);
}

void LabKorelInfo::RemoveStoragePoolDiskByUuid(const std::string& uuid,
                                               const std::string& evacuationMode) {
  Call("RemoveStoragePoolDiskByUuid", RemovePoolDiskByUuid, uuid, evacuationMode);
}

}  // namespace lab

namespace HskCtl::Korel {

void KorelUtil::GetKorelStoragePoolDiskInfo(const Uuid& disk, const KorelDiskList& disks,
                                            bool fromCluster,
                                            Tovrin::Korel::KorelStoragePoolDiskInfo& info) {
  info = lab::Call("GetKorelStoragePoolDiskInfo", lab::PoolDiskInfo, disk, disks, fromCluster);
}

bool KorelUtil::IsStoragePoolDisk(const std::string& device) {
  return lab::Call("IsStoragePoolDisk", lab::IsPoolDisk, device);
}

}  // namespace HskCtl::Korel
