#include "korel/cluster/ClientCluster.h"
#include "korel/cluster/Commands.h"
#include "korel/cluster/StretchedCluster.h"
#include "platform/base/FeatureList.h"

namespace OstrelCli::KorelNamespace {
namespace {

/// What the user asked for.
struct Request {
  std::string clusterUuid;
  KorelNodeType nodeType = KorelNodeType::Normal;
  bool hasPreferredFaultDomain = false;
  std::string preferredFaultDomain;
  bool wait = false;
  bool clientMode = false;
};

/// Why the host may not join in its present state; empty when it may. A witness may serve several
/// clusters, so it may join again.
std::string RefusalOfHost(const HostControl& host) {
  const KorelNodeType current = KorelUtil::GetNodeType();
  if (host->GetClusterInfo(true)->enabled && current != KorelNodeType::Witness) {
    return "The host is in a Korel cluster and not a Korel witness host. You need to remove it from the cluster or disable Korel.";
  }
  if (host->IsClientModeEnabled()) return kHostIsInClientCluster;
  return "";
}

/// Why a witness may not join as asked; empty when it may.
std::string RefusalOfWitness(const Request& request) {
  if (!request.hasPreferredFaultDomain) {
    return "If --witness-node is specified, --witness-preferred-fault-domain must also be specified.";
  }
  if (request.preferredFaultDomain.empty() ||
      KorelUtil::UTF8StringCharLength(request.preferredFaultDomain) >
          kMaxPreferredFaultDomainLength) {
    return StrCat("Preferred fault domain name cannot be empty or exceed ",
                  std::to_string(kMaxPreferredFaultDomainLength), " characters.");
  }
  if (request.clientMode) return "Client mode is not supported for witness or metadata node";
  return "";
}

/// Why an ordinary or metadata node may not join as asked; empty when it may.
std::string RefusalOfNode(const Request& request) {
  if (request.hasPreferredFaultDomain) {
    return "--witness-preferred-fault-domain is valid only when --witness-node is specified.";
  }
  if (request.clientMode && request.nodeType == KorelNodeType::Metadata) {
    return "Client mode is not supported for witness or metadata node";
  }
  return "";
}

void Join(const Request& request, const OutputPtr& output) {
  const HostControl host;
  if (const std::string refusal = RefusalOfHost(host); !refusal.empty()) {
    return Refuse(output, refusal);
  }
  const bool isWitness = request.nodeType == KorelNodeType::Witness;
  const std::string refusal = isWitness ? RefusalOfWitness(request) : RefusalOfNode(request);
  if (!refusal.empty()) return Refuse(output, refusal);
  if (request.clientMode) {
    host->JoinClientCluster(request.clusterUuid, false);
  } else {
    host->JoinCluster(KorelUtil::StringToKorelUuid(request.clusterUuid), request.nodeType,
                      request.preferredFaultDomain, request.wait, 0, 0);
  }
  Succeed(output);
}

}  // namespace

ClusterJoin::ClusterJoin() { SetDescription("Join the host to a Korel cluster."); }

std::shared_ptr<InputSpec> ClusterJoin::GetInputSpecInternal() {
  return Inputs(
      {{.name = "cluster-uuid",
        .shortName = "u",
        .required = true,
        .description = StrCat(
            "Korel cluster UUID of the cluster instance which the host will join, or create, ",
            kUuidForm)},
       {.name = "wait",
        .shortName = "w",
        .type = ParameterType::Flag,
        .description = "Wait until the host joins the cluster."},
       {.name = "witness-node",
        .shortName = "t",
        .type = ParameterType::Flag,
        .description =
            "Join the host as a witness node to the cluster. It is required to specify \"--witness-preferred-fault-domain\" when this parameter is set."},
       {.name = "witness-preferred-fault-domain",
        .shortName = "p",
        .description =
            "Specify the fault domain that witness node prefers to respond in case of network partition. It should be either of the two fault domains for existing data sites. This parameter is useful only when \"--witness-node\" is set."},
       {.name = "metadata-node",
        .shortName = "m",
        .type = ParameterType::Flag,
        .description = "Join the host as a metadata node to the cluster."},
       {.name = "client-mode",
        .shortName = "c",
        .type = ParameterType::Flag,
        .description = StrCat("Join Korel client cluster with given UUID, ", kUuidForm)}});
}

void ClusterJoin::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const bool done = Attempt(output, [&] {
    Request request;
    request.clusterUuid = input->GetParameter("cluster-uuid");
    const bool isWitness = input->IsFlagSet("witness-node");
    const bool isMetadata = input->IsFlagSet("metadata-node");
    request.hasPreferredFaultDomain = input->HasParameter("witness-preferred-fault-domain");
    request.preferredFaultDomain = input->GetParameter("witness-preferred-fault-domain");
    request.wait = input->IsFlagSet("wait");
    request.clientMode = input->IsFlagSet("client-mode");
    if (request.clientMode && !FeatureList::IsEnabled(Feature::ClientMode)) {
      return Refuse(output, "Client Mode is not supported.");
    }
    if (isWitness && isMetadata) {
      return Refuse(
          output,
          "Both --witness-node and --metadata-node cannot be set at the same time. Specify only one.");
    }
    if (isWitness) request.nodeType = KorelNodeType::Witness;
    if (isMetadata) request.nodeType = KorelNodeType::Metadata;
    Join(request, output);
  });
  if (!done) AnswerFalse(output);
}

}  // namespace OstrelCli::KorelNamespace
