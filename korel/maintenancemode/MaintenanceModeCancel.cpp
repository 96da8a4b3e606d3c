#include "korel/maintenancemode/Commands.h"

namespace OstrelCli::KorelNamespace {

MaintenanceModeCancel::MaintenanceModeCancel() {
  SetDescription("Cancel an in-progress Korel maintenance mode operation.");
}

void MaintenanceModeCancel::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  const bool done = Attempt(output, [&] {
    KorelUtil::DecomCancel();
    Succeed(output);
  });
  if (!done) AnswerFalse(output);
}

}  // namespace OstrelCli::KorelNamespace
