#include "korel/network/Commands.h"

namespace OstrelCli::KorelNamespace {

NetworkRestore::NetworkRestore() {
  SetDescription("Restore the persisted Korel network configuration.");
}

std::shared_ptr<InputSpec> NetworkRestore::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> NetworkRestore::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void NetworkRestore::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  const bool done = Attempt(output, [&] {
    const HostControl host;
    host->RestoreNetworkConfig();
    Succeed(output);
  });
  if (!done) AnswerFalse(output);
}

}  // namespace OstrelCli::KorelNamespace
