#include "lab/commands/Commands.h"
#include "lab/hostctl/Program.h"

namespace lab {

LabDaemonStart::LabDaemonStart() {
  SetDescription("Start the trace daemon of the host; one that runs is left alone.");
}

std::shared_ptr<InputSpec> LabDaemonStart::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> LabDaemonStart::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void LabDaemonStart::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
    RunTraceDaemon("start");
    Succeed(output);
  });
}

}  // namespace lab
