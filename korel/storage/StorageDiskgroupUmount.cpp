#include "korel/storage/Commands.h"
#include "korel/storage/Targets.h"

namespace OstrelCli::KorelNamespace {

StorageDiskgroupUmount::StorageDiskgroupUmount() {
  SetDescription("Unmount Korel disk or disk group.");
}

std::shared_ptr<InputSpec> StorageDiskgroupUmount::GetInputSpecInternal() {
  return Inputs(
      {{.name = "ssd",
        .shortName = "s",
        .description =
            "Specify a disk group's fronting ssd to unmount the ssd and each backing hdd from Korel usage.e.g.: mpx.dkhba2:C0:T1:L0"},
       {.name = "disk",
        .shortName = "d",
        .description = "Specify the hdd to unmount from Korel usage.e.g.: mpx.dkhba0:C0:T1:L0"},
       {.name = "uuid",
        .shortName = "u",
        .description =
            "Specify a Korel UUID of the disk or fronting ssd to unmount for use by Korel.e.g.: 5291022a-ad03-df90-dd0f-b9f980cc005e"},
       {.name = "evacuation-mode",
        .shortName = "m",
        .constraint = StringEnum(
            {{"NoAction", "Do not move Korel data out of the disk before unmount it"},
             {"EnsureObjectAccessibility",
              "Evacuate data from the disk to ensure object accessibility in the Korel cluster, before unmount the disk"},
             {"EvacuateAllData", "Evacuate all data from the disk before unmounting it"}}),
        .description =
            "Specify an action to take upon unmounting the disk group from Korel (default NoAction).\n%FULLENUM%Only valid with --ssd specified."}});
}

void StorageDiskgroupUmount::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  if (CountTargets(input) > 1) {
    return Refuse(output, "Specify only one of --ssd, --disk or --uuid.");
  }
  const bool hasMode = input->HasParameter("evacuation-mode");
  if (hasMode && !input->HasParameter("ssd")) {
    return Refuse(output, "Evacuation mode -m is only valid with --ssd option.");
  }
  Attempt(output, "Unable to unmount: ", [&] {
    const HostControl host;
    if (input->HasParameter("ssd") && hasMode) {
      host->UnmountDiskGroupWithMode(input->GetParameter("ssd"),
                                     input->GetParameter("evacuation-mode"));
    } else if (input->HasParameter("ssd")) {
      host->UnmountDiskGroup(input->GetParameter("ssd"), true);
    } else if (input->HasParameter("disk")) {
      host->UnmountDisk(input->GetParameter("disk"), true);
    } else if (input->HasParameter("uuid")) {
      host->UnmountDiskByUuid(input->GetParameter("uuid"));
    } else {
      return Refuse(output, "Need one of --disk, --ssd or --uuid.");
    }
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
