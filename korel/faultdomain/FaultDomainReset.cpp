#include "korel/faultdomain/Commands.h"

namespace OstrelCli::KorelNamespace {

FaultDomainReset::FaultDomainReset() { SetDescription("Reset Host fault domain to default value"); }

void FaultDomainReset::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  const auto failure = FailureOf([&] {
    const HostControl host;
    host->ResetFaultDomain();
    Succeed(output);
  });
  if (failure) Refuse(output, "Unable to reset fault domain name");
}

}  // namespace OstrelCli::KorelNamespace
