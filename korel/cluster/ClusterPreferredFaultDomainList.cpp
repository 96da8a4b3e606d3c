#include "korel/cluster/Commands.h"
#include "korel/cluster/StretchedCluster.h"

namespace OstrelCli::KorelNamespace {

ClusterPreferredFaultDomainList::ClusterPreferredFaultDomainList() {
  SetDescription("List the preferred fault domain for all attached stretched clusters.");
  Show(*this, *GetOutputStructure(), "simple", "Cluster %Sub-Cluster UUID%");
}

std::shared_ptr<MetaStruct> ClusterPreferredFaultDomainList::GetOutputStructure() {
  return Structure("PreferredFaultDomainList", {{"Sub-Cluster UUID", MetaType::String},
                                                {"Name", MetaType::String},
                                                {"ID", MetaType::String}});
}

std::shared_ptr<OutputSpec> ClusterPreferredFaultDomainList::GetOutputSpecInternal() {
  return Answers(ListOf(GetOutputStructure()));
}

void ClusterPreferredFaultDomainList::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, "Unable to list preferred fault domain name: ", [&] {
    const HostControl host;
    if (!IsStretched(host)) {
      return Refuse(output,
                    "Cannot list preferred fault domain if host is not in a stretched cluster.");
    }
    const auto uuids = host->GetJoinedClusterUuids();
    const auto list = ListOf(GetOutputStructure());
    list->Reserve(uuids.size());
    for (const std::string& uuid : uuids) {
      const auto [name, id] = GetPreferredFaultDomain(uuid);
      const auto row = GetOutputStructure();
      row->SetField("Sub-Cluster UUID", uuid);
      row->SetField("Name", name);
      row->SetField("ID", id);
      list->Add(row);
    }
    output->SetRootObject(list);
  });
}

}  // namespace OstrelCli::KorelNamespace
