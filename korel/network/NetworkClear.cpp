#include "korel/network/Commands.h"

namespace OstrelCli::KorelNamespace {

NetworkClear::NetworkClear() { SetDescription("Clear the Korel network configuration."); }

void NetworkClear::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  const bool done = Attempt(output, [&] {
    const HostControl host;
    host->ClearNetworkConfig();
    Succeed(output);
  });
  if (!done) AnswerFalse(output);
}

}  // namespace OstrelCli::KorelNamespace
