#include "korel/cluster/Commands.h"

namespace OstrelCli::KorelNamespace {

std::shared_ptr<ClusterRestore> ClusterRestore::New(bool withBootFlags) {
  return std::make_shared<ClusterRestore>(Key(), withBootFlags);
}

ClusterRestore::ClusterRestore(Key, bool withBootFlags) : withBootFlags_(withBootFlags) {
  SetDescription("Restore the persisted Korel cluster configuration.");
}

std::shared_ptr<InputSpec> ClusterRestore::GetInputSpecInternal() {
  if (!withBootFlags_) return Inputs();
  return Inputs({{.name = "boot",
                  .type = ParameterType::Flag,
                  .description = "Restore the cluster during boot."},
                 {.name = "postboot",
                  .type = ParameterType::Flag,
                  .description = "Complete the cluster restore during boot."}});
}

void ClusterRestore::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    const HostControl host;
    const bool boot = withBootFlags_ && input->IsFlagSet("boot");
    const bool postboot = withBootFlags_ && input->IsFlagSet("postboot");
    if (boot && postboot) return Refuse(output, "Flags boot and postboot are mutually exclusive");
    host->RestoreCluster(boot, postboot);
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
