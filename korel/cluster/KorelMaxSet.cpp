#include "korel/cluster/Commands.h"

namespace OstrelCli::KorelNamespace {

KorelMaxSet::KorelMaxSet() { SetDescription("Configure Korel Max on the current host."); }

std::shared_ptr<InputSpec> KorelMaxSet::GetInputSpecInternal() {
  return Inputs({{.name = "enable",
                  .shortName = "e",
                  .type = ParameterType::Bool,
                  .required = true,
                  .description = "Enable/Disable Korel Max on the current host."}});
}

void KorelMaxSet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, "Failed to enable Korel Max on the cluster: ", [&] {
    const HostControl host;
    if (!host->GetClusterInfo(true)->enabled) {
      return Refuse(
          output,
          "To enable/disable Korel Max, the host needs to be in a Korel cluster and enabled with Korel.");
    }
    const bool enable = input->GetParameterBool("enable");
    Tovrin::Korel::KorelDiskList disks;
    KorelUtil::GetKorelDisks(disks, Tovrin::Korel::KorelDiskTypes::Claimed);
    if (enable && !disks.empty()) {
      return Refuse(output, "The host has diskgroups on it. Korel Max cannot be configured.");
    }
    host->SetKorelMaxEnabled(enable);
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
