#include "korel/cluster/ClusterInformation.h"
#include "korel/cluster/Commands.h"

namespace OstrelCli::KorelNamespace {

ClusterGet::ClusterGet() {
  SetDescription("Get information about the Korel cluster that this host is joined to.");
  Show(*this, *GetOutputStructure(), "simple", "Cluster Information");
}

std::shared_ptr<MetaStruct> ClusterGet::GetOutputStructure() {
  return ClusterInformation("ClusterInformation");
}

std::shared_ptr<OutputSpec> ClusterGet::GetOutputSpecInternal() {
  return Answers(GetOutputStructure());
}

void ClusterGet::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, "Unable to get cluster information: ", [&] {
    const HostControl host;
    const auto uuids = host->GetJoinedClusterUuids();
    const auto answer = GetOutputStructure();
    FillHost(*answer, host, uuids.size());
    if (!uuids.empty()) FillCluster(*answer, host, uuids.front());
    output->SetRootObject(answer);
  });
}

}  // namespace OstrelCli::KorelNamespace
