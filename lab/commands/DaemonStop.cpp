#include "lab/commands/Commands.h"
#include "lab/model/Lab.h"
#include "lab/model/TraceDaemon.h"

namespace lab {

LabDaemonStop::LabDaemonStop() {
  SetDescription("Stop the trace daemon of the host, as if Korel were not enabled on it.");
}

std::shared_ptr<InputSpec> LabDaemonStop::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> LabDaemonStop::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void LabDaemonStop::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
    ChangeLab([](Store& store) { StopTraceDaemon(store, CurrentHost(store)); });
    Succeed(output);
  });
}

}  // namespace lab
