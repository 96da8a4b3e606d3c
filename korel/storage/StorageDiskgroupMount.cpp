#include "korel/storage/Commands.h"
#include "korel/storage/Targets.h"

namespace OstrelCli::KorelNamespace {

StorageDiskgroupMount::StorageDiskgroupMount() {
  SetDescription("Mount a Korel disk or disk group.");
}

std::shared_ptr<InputSpec> StorageDiskgroupMount::GetInputSpecInternal() {
  return Inputs(
      {{.name = "ssd",
        .shortName = "s",
        .description =
            "Specify a disk group's fronting ssd to mount the ssd and each backing hdd for use by Korel.e.g.: mpx.dkhba2:C0:T1:L0"},
       {.name = "disk",
        .shortName = "d",
        .description = "Specify the disk to mount for use by Korel.e.g.: mpx.dkhba0:C0:T1:L0"},
       {.name = "uuid",
        .shortName = "u",
        .description =
            "Specify a Korel UUID of the disk or fronting ssd to mount for use by Korel.e.g.: 5291022a-ad03-df90-dd0f-b9f980cc005e"}});
}

void StorageDiskgroupMount::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  if (CountTargets(input) > 1) {
    return Refuse(output, "Specify only one of --ssd, --disk or --uuid.");
  }
  Attempt(output, "Unable to mount: ", [&] {
    const HostControl host;
    if (input->HasParameter("ssd")) {
      host->MountDiskGroup(input->GetParameter("ssd"), false);
    } else if (input->HasParameter("uuid")) {
      host->MountDiskByUuid(input->GetParameter("uuid"));
    } else if (input->HasParameter("disk")) {
      host->MountDisk(input->GetParameter("disk"));
    } else {
      Refuse(output, "Either --ssd, --disk or --uuid is required");
      return AnswerFalse(output);
    }
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
