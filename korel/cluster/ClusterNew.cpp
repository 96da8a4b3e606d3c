#include "korel/cluster/ClientCluster.h"
#include "korel/cluster/Commands.h"
#include "platform/base/FeatureList.h"

namespace OstrelCli::KorelNamespace {

ClusterNew::ClusterNew() {
  SetDescription(
      "Create a Korel cluster with current host joined. A random sub-cluster UUID will be generated.");
}

std::shared_ptr<InputSpec> ClusterNew::GetInputSpecInternal() {
  return Inputs(
      {{.name = "client-mode",
        .shortName = "c",
        .type = ParameterType::Flag,
        .description =
            "Korel client mode allows mount of Korel datastore from the server cluster without enabling Korel."}});
}

void ClusterNew::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const bool done = Attempt(output, "Unable to create the new Korel cluster: ", [&] {
    const HostControl host;
    if (host->GetClusterInfo(true)->enabled) {
      return Refuse(
          output,
          "The host is in a Korel cluster and enabled for Korel. You need to remove it from the cluster or disable Korel.");
    }
    if (host->IsClientModeEnabled()) return Refuse(output, kHostIsInClientCluster);
    const std::string uuid = NewUuid();
    if (uuid.empty()) return Refuse(output, "Unable to generate a UUID");
    if (!input->IsFlagSet("client-mode")) {
      host->CreateCluster(uuid, true, false);
    } else if (FeatureList::IsEnabled(Feature::ClientMode)) {
      host->JoinClientCluster(uuid, false);
    } else {
      return Refuse(output, "Client Mode is not supported.");
    }
    Succeed(output);
  });
  if (!done) AnswerFalse(output);
}

}  // namespace OstrelCli::KorelNamespace
