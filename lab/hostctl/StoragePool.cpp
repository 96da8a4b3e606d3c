#include "lab/model/StoragePool.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "lab/hostctl/Records.h"

namespace lab {

void LabKorelInfo::AddStoragePoolDisks(const std::vector<std::string>& devices) {
  Call("AddStoragePoolDisks", Arguments(devices),
       [&](Store& store, const Host& host) { AddPoolDisks(store, host, devices); });
}

void LabKorelInfo::RemoveStoragePoolDisk(const std::string& device,
                                         const std::string& evacuationMode) {
  Call(
      "RemoveStoragePoolDisk", Arguments(device, evacuationMode),
      [&](Store& store, const Host& host) { RemovePoolDisk(store, host, device, evacuationMode); });
}

void LabKorelInfo::RemoveStoragePoolDiskByUuid(const std::string& uuid,
                                               const std::string& evacuationMode) {
  Call("RemoveStoragePoolDiskByUuid", Arguments(uuid, evacuationMode),
       [&](Store& store, const Host& host) {
         RemovePoolDiskByUuid(store, host, uuid, evacuationMode);
       });
}

}  // namespace lab
