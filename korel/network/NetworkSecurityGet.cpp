#include "korel/network/Commands.h"
#include "korel/network/SecurityRecord.h"

namespace OstrelCli::KorelNamespace {

NetworkSecurityGet::NetworkSecurityGet() {
  SetDescription("Get Korel network security configurations for a subcluster.");
  Show(*this, *GetOutputStructure(), "simple");
}

std::shared_ptr<MetaStruct> NetworkSecurityGet::GetOutputStructure() {
  return SecurityRecord("NetworkSecurityGet");
}

std::shared_ptr<InputSpec> NetworkSecurityGet::GetInputSpecInternal() {
  return Inputs(
      {{.name = "cluster-uuid",
        .shortName = "u",
        .description = StrCat(
            "Specify the Korel cluster UUID of the cluster instance which will be displayed, ",
            kUuidForm)}});
}

std::shared_ptr<OutputSpec> NetworkSecurityGet::GetOutputSpecInternal() {
  return Answers(GetOutputStructure());
}

void NetworkSecurityGet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, "Unable to get data-in-transit encryption status: ", [&] {
    const HostControl host;
    std::string clusterUuid = input->GetParameter("cluster-uuid");
    if (clusterUuid.empty()) {
      clusterUuid = host->GetClusterUuid();
    } else if (!IsJoined(host, clusterUuid)) {
      return Refuse(output, UnknownCluster(clusterUuid));
    }
    const auto answer = GetOutputStructure();
    FillSecurityRecord(*answer, host, clusterUuid);
    output->SetRootObject(answer);
  });
}

}  // namespace OstrelCli::KorelNamespace
