#include "lab/commands/Commands.h"
#include "lab/model/HostState.h"
#include "lab/model/Lab.h"

namespace lab {

LabMaintenanceStart::LabMaintenanceStart() {
  SetDescription(
      "Begin a maintenance mode operation of the host, which goes on until \"korel maintenancemode "
      "cancel\" or a reboot ends it.");
}

std::shared_ptr<InputSpec> LabMaintenanceStart::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> LabMaintenanceStart::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void LabMaintenanceStart::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
    ChangeLab([](Store& store) { StartMaintenance(store, CurrentHost(store)); });
    Succeed(output);
  });
}

}  // namespace lab
