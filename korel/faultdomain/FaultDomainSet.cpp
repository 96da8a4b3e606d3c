#include "korel/faultdomain/Commands.h"

namespace OstrelCli::KorelNamespace {
namespace {

/// In bytes, although the message says characters.
constexpr std::size_t kMaxNameLength = 256;

}  // namespace

FaultDomainSet::FaultDomainSet() { SetDescription("Set the fault domain for this host"); }

std::shared_ptr<InputSpec> FaultDomainSet::GetInputSpecInternal() {
  return Inputs(
      {{.name = "fdname",
        .shortName = "n",
        .required = true,
        .description =
            "Fault domain name to use for this host. Empty string means reset to default."}});
}

void FaultDomainSet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, "Unable to set fault domain name: ", [&] {
    const std::string name = input->GetParameter("fdname");
    if (name.size() > kMaxNameLength) {
      Refuse(output, StrCat("Fault domain name cannot exceed ", std::to_string(kMaxNameLength),
                            " characters."));
      // Callers look at the message; the result has always been true here.
      return Succeed(output);
    }
    const HostControl host;
    if (!host->GetClusterInfo(true)->enabled) {
      throw KorelCtlException("because Korel is not enabled");
    }
    if (name.empty()) {
      host->ResetFaultDomain();
    } else {
      host->SetFaultDomainName(name);
    }
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
