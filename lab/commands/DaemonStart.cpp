#include "lab/commands/Commands.h"
#include "lab/model/Lab.h"
#include "lab/model/TraceDaemon.h"

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
    ChangeLab([](Store& store) { StartTraceDaemon(store, CurrentHost(store)); });
    Succeed(output);
  });
}

}  // namespace lab
