#include "korel/maintenancemode/Commands.h"

namespace OstrelCli::KorelNamespace {

MaintenanceModeCancel::MaintenanceModeCancel() {
  SetDescription("Cancel an in-progress Korel maintenance mode operation.");
}

std::shared_ptr<InputSpec> MaintenanceModeCancel::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> MaintenanceModeCancel::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void MaintenanceModeCancel::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  const bool done = Attempt(output, [&] {
    KorelUtil::DecomCancel();
    Succeed(output);
  });
  if (!done) AnswerFalse(output);
}

}  // namespace OstrelCli::KorelNamespace
