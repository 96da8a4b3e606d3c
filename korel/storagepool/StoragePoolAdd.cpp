#include "korel/frame/CallOptional.h"
#include "korel/storagepool/Commands.h"
#include "platform/hostctl/Optional.h"

namespace OstrelCli::KorelNamespace {

StoragePoolAdd::StoragePoolAdd() {
  SetDescription("Add physical disks to the Korel storage pool.");
}

std::shared_ptr<InputSpec> StoragePoolAdd::GetInputSpecInternal() {
  return Inputs(
      {{.name = "disk",
        .shortName = "d",
        .type = ParameterType::StringList,
        .required = true,
        .description =
            "Name of a disk to add to the storage pool. Expects an empty disk, which will be partitioned and formatted. Multiple disks can be provided using format -d disk1 -d disk2."}});
}

void StoragePoolAdd::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  std::vector<std::string> disks;
  input->GetParameterList("disk", disks);
  Attempt(output, "Unable to add storage pool disk: ", [&] {
    const HostControl host;
    CallOptional(&Tovrin::Korel::AddStoragePoolDisks, "add storage pool disks", *host, disks);
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
