#include "korel/cluster/Commands.h"
#include "korel/cluster/UnicastAddress.h"

namespace OstrelCli::KorelNamespace {
namespace {

using Agent = KorelInfo::KorelUnicastAddressInfo;
using Tovrin::Korel::KorelUnicastAgentType;

/// Without the metadata feature a metadata agent is added as a witness.
KorelUnicastAgentType TypeOf(const InputPtr& input) {
  if (!input->HasParameter("type")) return KorelUnicastAgentType::Witness;
  const std::string type = input->GetParameter("type");
  if (type == "node") return KorelUnicastAgentType::Node;
  if (KorelUtil::IsKorelMetadataNodeFeatureEnabled() && type == "metadata") {
    return KorelUnicastAgentType::Metadata;
  }
  return type == "remote" ? KorelUnicastAgentType::Remote : KorelUnicastAgentType::Witness;
}

/// Takes the agent from the options, except its type and cluster, which it has already. Returns why
/// that is not possible; empty when it is.
std::string Describe(const InputPtr& input, bool encryption, Agent& agent) {
  agent.nodeUuid = kNoUuid;
  if (input->HasParameter("uuid")) {
    agent.nodeUuid = input->GetParameter("uuid");
  } else if (agent.isWitness != KorelUnicastAgentType::Witness) {
    return "Can not add unicastagent without specifying node-uuid";
  }
  agent.supportsUnicast = agent.isWitness == KorelUnicastAgentType::Remote;
  if (input->HasParameter("supports-unicast")) {
    agent.supportsUnicast = input->GetParameterBool("supports-unicast");
  } else if (agent.isWitness == KorelUnicastAgentType::Node) {
    return "Can not add unicastagent without specifying unicast support";
  }
  agent.address = input->GetParameter("addr");
  if (!IsIpAddress(agent.address)) return InvalidAddress(agent.address);
  agent.port = input->HasParameter("port") ? input->GetParameterInt("port") : kDefaultUnicastPort;
  agent.interfaceName = input->GetParameter("bound-interface-name");
  agent.certThumbprint = input->GetParameter("cert-thumbprint");
  if (encryption && !input->HasParameter("cert-thumbprint")) {
    return "Error: cert-thumbprint is required to enable Korel data-in-transit encryption.";
  }
  return "";
}

/// Why no further witness can be added; empty when there is none yet.
std::string RefusalOfWitness(const HostControl& host) {
  const auto witnesses = host->GetUnicastWitnesses();
  if (witnesses.empty()) return "";
  return StrCat("Korel does not support connecting to more than one unicast witness, and there ",
                witnesses.size() == 1 ? "is already a unicast witness configured: "
                                      : "are already multiple unicast witnesses configured: ",
                JoinWithCommas(witnesses), ".");
}

}  // namespace

ClusterUnicastAgentAdd::ClusterUnicastAgentAdd() {
  SetDescription("Add a unicast agent to the Korel cluster configuration.");
}

std::shared_ptr<InputSpec> ClusterUnicastAgentAdd::GetInputSpecInternal() {
  return Inputs(
      {{.name = "type",
        .shortName = "t",
        .constraint = StringEnum({{"witness", ""}, {"node", ""}, {"metadata", ""}, {"remote", ""}}),
        .description = "Type of the unicast agent (One of %ENUM%, default is witness)."},
       {.name = "uuid",
        .shortName = "u",
        .description = "UUID of the unicast agent (required for -t node)."},
       {.name = "supports-unicast",
        .shortName = "U",
        .type = ParameterType::Bool,
        .description = "Whether the software version supports unicast (required for -t node)"},
       {.name = "addr",
        .shortName = "a",
        .required = true,
        .description = "IP address of the unicast agent."},
       {.name = "port",
        .shortName = "p",
        .type = ParameterType::Int,
        .description = "Port the unicast agent is listening on."},
       {.name = "bound-interface-name",
        .shortName = "i",
        .description = "Name of the bound outgoing network interface."},
       {.name = "cert-thumbprint",
        .shortName = "T",
        .description =
            "SHA-1 certificate thumbprint. Cert-thumbprint would be required to enable Korel data-in-transit encryption."},
       {.name = "cluster-uuid",
        .shortName = "c",
        .description =
            "Cluster UUID of the remote server unicast agent (required for -t remote). Or cluster UUID for host to be added on a shared witness node."}});
}

void ClusterUnicastAgentAdd::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    const HostControl host;
    Agent agent;
    agent.subClusterUuid = input->GetParameter("cluster-uuid");
    if (agent.subClusterUuid.empty()) {
      if (host->GetJoinedClusterUuids().size() > 1) {
        return Refuse(output, "Please specify the cluster uuid for shared witness host.");
      }
      agent.subClusterUuid = host->GetClusterUuid();
    }
    const bool encryption = host->IsDataInTransitEncryptionEnabled(agent.subClusterUuid, true);
    agent.isWitness = TypeOf(input);
    std::string refusal = Describe(input, encryption, agent);
    if (refusal.empty() && agent.isWitness == KorelUnicastAgentType::Witness) {
      refusal = RefusalOfWitness(host);
    }
    if (refusal.empty() && agent.isWitness == KorelUnicastAgentType::Remote &&
        !input->HasParameter("cluster-uuid")) {
      refusal = "Can not add remote server node without specifying cluster uuid";
    }
    if (!refusal.empty()) return Refuse(output, refusal);

    host->AddUnicastAgent(agent.nodeUuid, agent.isWitness, agent.supportsUnicast, agent.address,
                          agent.port, input->HasParameter("bound-interface-name"),
                          agent.interfaceName, "", agent.certThumbprint, agent.subClusterUuid);
    if (agent.isWitness == KorelUnicastAgentType::Node) host->RefreshUnicastAgents("");
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
