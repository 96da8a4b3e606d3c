#include "korel/faultdomain/Commands.h"

namespace OstrelCli::KorelNamespace {

FaultDomainReset::FaultDomainReset() { SetDescription("Reset Host fault domain to default value"); }

std::shared_ptr<InputSpec> FaultDomainReset::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> FaultDomainReset::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void FaultDomainReset::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  const auto failure = FailureOf([&] {
    const HostControl host;
    host->ResetFaultDomain();
    Succeed(output);
  });
  if (failure) Refuse(output, "Unable to reset fault domain name");
}

}  // namespace OstrelCli::KorelNamespace
