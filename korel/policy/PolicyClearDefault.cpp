#include "korel/policy/Commands.h"

namespace OstrelCli::KorelNamespace {

PolicyClearDefault::PolicyClearDefault() {
  SetDescription("Reset the default Korel storage policy values to the built-in ones.");
}

void PolicyClearDefault::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, "Unable to clear default policy: ", [&] {
    const HostControl host;
    host->ClearDefaultPolicies();
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
