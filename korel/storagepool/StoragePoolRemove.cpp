#include "korel/frame/CallOptional.h"
#include "korel/frame/EvacuationMode.h"
#include "korel/storagepool/Commands.h"
#include "platform/hostctl/Optional.h"

namespace OstrelCli::KorelNamespace {

StoragePoolRemove::StoragePoolRemove() {
  SetDescription("Remove a physical disk from the Korel storage pool.");
}

std::shared_ptr<InputSpec> StoragePoolRemove::GetInputSpecInternal() {
  return Inputs({{.name = "disk",
                  .shortName = "d",
                  .description = "Name of the disk to remove from the storage pool."},
                 {.name = "uuid",
                  .shortName = "u",
                  .description = "Korel UUID of the disk to remove from the storage pool."},
                 RemovalModeParameter()});
}

void StoragePoolRemove::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const bool hasDisk = input->HasParameter("disk");
  if (hasDisk == input->HasParameter("uuid")) {
    return Refuse(output, "Specify only one of --disk or --uuid.");
  }
  const auto mode = RemovalMode(input, output);
  if (!mode) return;
  Attempt(output, "Unable to remove storage pool disk: ", [&] {
    const HostControl host;
    CallOptional(hasDisk ? &Tovrin::Korel::RemoveStoragePoolDisk
                         : &Tovrin::Korel::RemoveStoragePoolDiskByUuid,
                 "remove storage pool disks", *host, input->GetParameter(hasDisk ? "disk" : "uuid"),
                 *mode);
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
