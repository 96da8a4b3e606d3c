#include "lab/model/StoragePool.h"

#include "lab/hostctl/Call.h"
#include "platform/hostctl/KorelUtil.h"
#include "platform/hostctl/Optional.h"

namespace Tovrin::Korel {

void AddStoragePoolDisks(KorelInfo&, const std::vector<std::string>& devices) {
  lab::Call("AddStoragePoolDisks", lab::AddPoolDisks, devices);
}

void RemoveStoragePoolDisk(KorelInfo&, const std::string& device,
                           const std::string& evacuationMode) {
  lab::Call("RemoveStoragePoolDisk", lab::RemovePoolDisk, device, evacuationMode);
}

void RemoveStoragePoolDiskByUuid(KorelInfo&, const std::string& uuid,
                                 const std::string& evacuationMode) {
  lab::Call("RemoveStoragePoolDiskByUuid", lab::RemovePoolDiskByUuid, uuid, evacuationMode);
}

}  // namespace Tovrin::Korel

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
