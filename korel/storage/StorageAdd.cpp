#include "korel/storage/Commands.h"

namespace OstrelCli::KorelNamespace {

StorageAdd::StorageAdd() { SetDescription("Add physical disk for Korel usage."); }

std::shared_ptr<InputSpec> StorageAdd::GetInputSpecInternal() {
  return Inputs(
      {{.name = "ssd",
        .shortName = "s",
        .required = true,
        .description =
            "Specify a caching device to be added to a Korel disk-group as Korel caching tier device. Expects an empty cache device with no partitions in which case the device will be partitioned and formatted. Otherwise this operation will fail. If a cache device which is already added for use by Korel, is provided along with '-d/--disks', then the disk mentioned with '-d' will be added to the existing disk-group created under this cache device and in which case, the cache device won't be partitioned and formatted. The command expects the device name for the drive to be provided, e.g.: mpx.dkhba2:C0:T1:L0 using format -s device"},
       {.name = "disks",
        .shortName = "d",
        .type = ParameterType::StringList,
        .required = true,
        .description =
            "Name of disk devices to be added to a Korel disk-group as Korel capacity tier devices. Expects an empty device with no partitions as the device will be partitioned and formatted. Otherwise this operation will fail. The command expects the device name for the disk to be provided, e.g.: mpx.dkhba2:C0:T1:L0.Multiple capacity device can be provided using format -d device1 -d device2 -d device3"}});
}

void StorageAdd::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const std::string cachingDevice = input->GetParameter("ssd");
  std::vector<std::string> capacityDevices;
  input->GetParameterList("disks", capacityDevices);
  Attempt(output, "Unable to add device: ", [&] {
    const HostControl host;
    host->AddDisks(cachingDevice, capacityDevices);
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
