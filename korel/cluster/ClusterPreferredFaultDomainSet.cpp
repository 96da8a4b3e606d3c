#include "korel/cluster/Commands.h"
#include "korel/cluster/StretchedCluster.h"

namespace OstrelCli::KorelNamespace {

ClusterPreferredFaultDomainSet::ClusterPreferredFaultDomainSet() {
  SetDescription("Set the preferred fault domain for a stretched cluster.");
}

std::shared_ptr<InputSpec> ClusterPreferredFaultDomainSet::GetInputSpecInternal() {
  return Inputs(
      {{.name = "preferred-fault-domain-name",
        .shortName = "n",
        .required = true,
        .description = "Preferred Fault domain name to use for a stretched cluster."},
       {.name = "cluster-uuid",
        .shortName = "u",
        .description =
            StrCat("Korel cluster UUID of the cluster instance, ", kUuidForm,
                   " This field is required if this host is working as a shared witness host.")}});
}

void ClusterPreferredFaultDomainSet::ExecuteInternal(const InputPtr& input,
                                                     const OutputPtr& output) {
  Attempt(output, "Unable to set preferred fault domain name: ", [&] {
    const std::string name = input->GetParameter("preferred-fault-domain-name");
    if (name.empty()) return Refuse(output, "Cannot set preferred fault domain name as empty.");
    if (KorelUtil::UTF8StringCharLength(name) > kMaxPreferredFaultDomainLength) {
      return Refuse(output, StrCat("Preferred Fault domain name cannot exceed ",
                                   std::to_string(kMaxPreferredFaultDomainLength), " characters."));
    }
    if (KorelUtil::GetNodeType() != KorelNodeType::Witness) {
      Refuse(output, "Cannot set preferred fault domain if the host is not a witness node.");
      // Host profiles apply this command to every host and count on a true result.
      return Succeed(output);
    }
    const HostControl host;
    std::string clusterUuid = input->GetParameter("cluster-uuid");
    if (clusterUuid.empty()) {
      if (host->GetJoinedClusterUuids().size() != 1) {
        return Refuse(
            output,
            "This host is working as a shared witness. Parameter cluster-uuid is required to specify target cluster.");
      }
      clusterUuid = host->GetClusterUuid();
    }
    host->SetPreferredFaultDomain(name, clusterUuid);
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
