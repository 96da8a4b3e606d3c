#include <algorithm>

#include "korel/network/Commands.h"
#include "korel/network/SecurityRecord.h"

namespace OstrelCli::KorelNamespace {
namespace {

/// The refusal that the first agent without a thumbprint calls for; empty when every agent has one.
std::string RefusalOfAgents(const HostControl& host) {
  std::vector<KorelInfo::KorelUnicastAddressInfo> agents;
  host->GetUnicastAgents(agents, true, "");
  const auto bare = std::find_if(agents.begin(), agents.end(),
                                 [](const auto& agent) { return agent.certThumbprint.empty(); });
  if (bare == agents.end()) return "";
  return StrCat(
      "Can not enable Data-in-transit encryption because thumbprint is not provided for host ",
      bare->address, " (", bare->nodeUuid, ")");
}

/// Replaces an empty UUID by that of the host's one cluster. Returns why there is no cluster to
/// set; empty when there is.
std::string ChooseCluster(const HostControl& host, std::string& clusterUuid) {
  if (!clusterUuid.empty()) {
    return IsJoined(host, clusterUuid) ? "" : UnknownCluster(clusterUuid);
  }
  if (host->GetJoinedClusterUuids().size() > 1) {
    return "Please specify the cluster uuid for shared witness host.";
  }
  clusterUuid = host->GetClusterUuid();
  return "";
}

}  // namespace

NetworkSecuritySet::NetworkSecuritySet() {
  SetDescription("Configure Korel network security settings for a subcluster.");
}

std::shared_ptr<InputSpec> NetworkSecuritySet::GetInputSpecInternal() {
  return Inputs(
      {{.name = "encryption",
        .shortName = "e",
        .type = ParameterType::Bool,
        .description = "Data-in-transit encryption status."},
       {.name = "rekey-interval",
        .shortName = "r",
        .type = ParameterType::Int,
        .description =
            "Rekey interval for data-in-transit encryption, in minutes. Default interval is 1440, i.e. 24 hours. Minimal interval is 30 minutes and maximum is 10080, i.e. 7 days."},
       {.name = "cluster-uuid",
        .shortName = "u",
        .description =
            StrCat("Specify the Korel cluster UUID of the cluster instance which will be set, ",
                   kUuidForm)}});
}

void NetworkSecuritySet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, "Unable to config data in transit encryption: ", [&] {
    const HostControl host;
    if (!host->GetClusterInfo(true)->enabled) {
      return Refuse(output, "Korel Clustering is not enabled on this host");
    }
    if (const std::string refusal = RefusalOfAgents(host); !refusal.empty()) {
      return Refuse(output, refusal);
    }
    std::string clusterUuid = input->GetParameter("cluster-uuid");
    if (const std::string refusal = ChooseCluster(host, clusterUuid); !refusal.empty()) {
      return Refuse(output, refusal);
    }
    if (input->HasParameter("encryption")) {
      host->SetDataInTransitEncryption(clusterUuid, input->GetParameterBool("encryption"),
                                       "SETTLED", 0);
    }
    if (input->HasParameter("rekey-interval")) {
      host->SetRekeyInterval(clusterUuid, input->GetParameterInt("rekey-interval"));
    }
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
