#include "korel/cluster/Commands.h"
#include "korel/cluster/StretchedCluster.h"

namespace OstrelCli::KorelNamespace {

ClusterPreferredFaultDomainGet::ClusterPreferredFaultDomainGet() {
  SetDescription("Get the preferred fault domain for a stretched cluster.");
  SetDefaultOutputFormatter("simple");
}

std::shared_ptr<MetaStruct> ClusterPreferredFaultDomainGet::GetOutputStructure() {
  return Structure("PreferredFaultDomain", {{"Cluster UUID", MetaType::String},
                                            {"Preferred Fault Domain Name", MetaType::String},
                                            {"Preferred Fault Domain Id", MetaType::String}});
}

std::shared_ptr<InputSpec> ClusterPreferredFaultDomainGet::GetInputSpecInternal() {
  return Inputs(
      {{.name = "cluster-uuid",
        .shortName = "u",
        .description = StrCat(
            "Specify the Korel cluster UUID of the cluster instance, and thepreferred fault domain info of target cluster will be displayed, ",
            kUuidForm)}});
}

std::shared_ptr<OutputSpec> ClusterPreferredFaultDomainGet::GetOutputSpecInternal() {
  return Answers(GetOutputStructure());
}

void ClusterPreferredFaultDomainGet::ExecuteInternal(const InputPtr& input,
                                                     const OutputPtr& output) {
  Attempt(output, "Unable to get preferred fault domain name: ", [&] {
    const HostControl host;
    if (!IsStretched(host)) {
      return Refuse(output,
                    "Cannot get preferred fault domain if host is not in a stretched cluster.");
    }
    const std::string uuid = input->HasParameter("cluster-uuid")
                                 ? input->GetParameter("cluster-uuid")
                                 : host->GetClusterUuid();
    const auto [name, id] = GetPreferredFaultDomain(uuid);
    const auto answer = GetOutputStructure();
    answer->SetField("Cluster UUID", uuid);
    answer->SetField("Preferred Fault Domain Name", name);
    answer->SetField("Preferred Fault Domain Id", id);
    output->SetRootObject(answer);
  });
}

}  // namespace OstrelCli::KorelNamespace
