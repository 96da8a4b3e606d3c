#include "korel/network/Commands.h"

namespace OstrelCli::KorelNamespace {

NetworkRestore::NetworkRestore() {
  SetDescription("Restore the persisted Korel network configuration.");
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
