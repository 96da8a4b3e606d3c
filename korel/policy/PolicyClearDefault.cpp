#include "korel/policy/Commands.h"

namespace OstrelCli::KorelNamespace {

PolicyClearDefault::PolicyClearDefault() {
  SetDescription("Reset the default Korel storage policy values to the built-in ones.");
}

std::shared_ptr<InputSpec> PolicyClearDefault::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> PolicyClearDefault::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void PolicyClearDefault::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, "Unable to clear default policy: ", [&] {
    const HostControl host;
    host->ClearDefaultPolicies();
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
