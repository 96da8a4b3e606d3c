#include "lab/commands/Commands.h"
#include "lab/hostctl/Program.h"

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
    RunTraceDaemon("stop");
    Succeed(output);
  });
}

}  // namespace lab
