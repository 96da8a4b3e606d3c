#include "korel/frame/EvacuationMode.h"
#include "korel/storage/Commands.h"
#include "korel/storage/Targets.h"

namespace OstrelCli::KorelNamespace {

StorageRemove::StorageRemove() { SetDescription("Remove physical disks from Korel disk groups."); }

std::shared_ptr<InputSpec> StorageRemove::GetInputSpecInternal() {
  return Inputs(
      {{.name = "disk",
        .shortName = "d",
        .description =
            "Specify individual hdd to remove from Korel usage.e.g.: mpx.dkhba2:C0:T1:L0"},
       {.name = "ssd",
        .shortName = "s",
        .description =
            "Specify a disk group's fronting ssd to remove the ssd and each backing hdd from Korel usage.e.g.: mpx.dkhba2:C0:T1:L0"},
       {.name = "uuid",
        .shortName = "u",
        .description = "Specify UUID of Korel disk.e.g.: 52afa1de-4240-d5d6-17f9-8af1ec8509e5"},
       RemovalModeParameter()});
}

void StorageRemove::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, "Unable to remove device: ", [&] {
    const HostControl host;
    if (CountTargets(input) > 1) {
      return Refuse(output, "At most one of --disk or --ssd or --uuid can be specified.");
    }
    const auto mode = RemovalMode(input, output);
    if (!mode) return;
    if (input->HasParameter("disk")) {
      host->RemoveDisk(input->GetParameter("disk"), *mode);
    } else if (input->HasParameter("ssd")) {
      host->RemoveDiskGroup(input->GetParameter("ssd"), *mode);
    } else if (input->HasParameter("uuid")) {
      host->RemoveDiskByUuid(input->GetParameter("uuid"), *mode);
    } else {
      return Refuse(output,
                    "No disk provided, one of --disk or --ssd or --uuid needs to be specified.");
    }
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
