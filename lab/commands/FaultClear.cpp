#include "lab/commands/Commands.h"
#include "lab/model/Faults.h"
#include "lab/model/Lab.h"

namespace lab {

LabFaultClear::LabFaultClear() { SetDescription("Let all host control operations work again."); }

std::shared_ptr<InputSpec> LabFaultClear::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> LabFaultClear::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void LabFaultClear::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
    ChangeLab(ClearFaults);
    Succeed(output);
  });
}

}  // namespace lab
