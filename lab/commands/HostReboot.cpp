#include "lab/commands/Commands.h"
#include "lab/model/HostState.h"
#include "lab/model/Lab.h"

namespace lab {

LabHostReboot::LabHostReboot() {
  SetDescription(
      "Reboot a host: it takes part in no cluster and has no network configuration until \"korel "
      "cluster restore\" and \"korel network restore\" bring back what is persisted.");
}

std::shared_ptr<InputSpec> LabHostReboot::GetInputSpecInternal() { return Inputs({HostName()}); }

std::shared_ptr<OutputSpec> LabHostReboot::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void LabHostReboot::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    ChangeLab([&](Store& store) { Reboot(store, ChosenHost(store, input)); });
    Succeed(output);
  });
}

}  // namespace lab
