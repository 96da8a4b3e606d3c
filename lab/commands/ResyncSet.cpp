#include "lab/commands/Commands.h"
#include "lab/model/HostState.h"
#include "lab/model/Lab.h"

namespace lab {

LabResyncSet::LabResyncSet() {
  SetDescription(
      "Set the resync workload of the host's busiest disk group. \"korel resync bandwidth get\" "
      "shows it, or the throttle when that is less.");
}

std::shared_ptr<InputSpec> LabResyncSet::GetInputSpecInternal() {
  return Inputs({{.name = "rate",
                  .shortName = "r",
                  .type = ParameterType::Int,
                  .required = true,
                  .constraint = IntRange(0, 1'000'000),
                  .description = "What it would use without a throttle, in Mbps (%ENUM%)."}});
}

std::shared_ptr<OutputSpec> LabResyncSet::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void LabResyncSet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    ChangeLab([&](Store& store) {
      SetResyncRate(store, CurrentHost(store), input->GetParameterInt("rate"));
    });
    Succeed(output);
  });
}

}  // namespace lab
