#include "korel/cluster/ClusterInformation.h"
#include "korel/cluster/Commands.h"

namespace OstrelCli::KorelNamespace {

ClusterList::ClusterList() {
  SetDescription("List information about every Korel cluster that this host is joined to.");
  Show(*this, *GetOutputStructure(), "simple", "Cluster Information of %Sub-Cluster UUID%");
}

std::shared_ptr<MetaStruct> ClusterList::GetOutputStructure() {
  return ClusterInformation("ClusterInformationList");
}

std::shared_ptr<OutputSpec> ClusterList::GetOutputSpecInternal() {
  return Answers(ListOf(GetOutputStructure()));
}

void ClusterList::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, "Unable to list cluster information: ", [&] {
    const HostControl host;
    const auto uuids = host->GetJoinedClusterUuids();
    const auto list = ListOf(GetOutputStructure());
    for (const std::string& uuid : uuids) {
      const auto row = GetOutputStructure();
      FillHost(*row, host, uuids.size());
      FillCluster(*row, host, uuid);
      list->Add(row);
    }
    output->SetRootObject(list);
  });
}

}  // namespace OstrelCli::KorelNamespace
