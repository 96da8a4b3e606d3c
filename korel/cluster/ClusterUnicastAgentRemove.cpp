#include "korel/cluster/Commands.h"
#include "korel/cluster/UnicastAddress.h"

namespace OstrelCli::KorelNamespace {
namespace {

using Tovrin::Korel::KorelUnicastAgentType;

/// A node unless the option says otherwise.
KorelUnicastAgentType TypeOf(const InputPtr& input) {
  const std::string type = input->GetParameter("type");
  if (type == "witness") return KorelUnicastAgentType::Witness;
  if (type == "metadata") return KorelUnicastAgentType::Metadata;
  if (type == "remote") return KorelUnicastAgentType::Remote;
  return KorelUnicastAgentType::Node;
}

}  // namespace

ClusterUnicastAgentRemove::ClusterUnicastAgentRemove() {
  SetDescription("Remove a unicast agent from the Korel cluster configuration.");
}

std::shared_ptr<InputSpec> ClusterUnicastAgentRemove::GetInputSpecInternal() {
  return Inputs(
      {{.name = "uuid", .shortName = "u", .description = "UUID of the unicast agent."},
       {.name = "addr",
        .shortName = "a",
        .required = true,
        .description = "IP address of the unicast agent."},
       {.name = "port",
        .shortName = "p",
        .type = ParameterType::Int,
        .description = "Port the unicast agent is listening on."},
       {.name = "cluster-uuid",
        .shortName = "c",
        .description = "Cluster UUID of the unicast agent."},
       {.name = "type",
        .shortName = "t",
        .constraint = StringEnum({{"node", ""}, {"witness", ""}, {"metadata", ""}, {"remote", ""}}),
        .description = "Type of the unicast agent (One of %ENUM%, default is node)."}});
}

void ClusterUnicastAgentRemove::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, "Unable to remove the unicast agent: ", [&] {
    const HostControl host;
    const std::string uuid = input->HasParameter("uuid") ? input->GetParameter("uuid") : kNoUuid;
    const std::string address = input->GetParameter("addr");
    if (!IsIpAddress(address)) return Refuse(output, InvalidAddress(address));
    const std::int64_t port =
        input->HasParameter("port") ? input->GetParameterInt("port") : kDefaultUnicastPort;
    const bool removed =
        host->RemoveUnicastAgent(uuid, address, port, TypeOf(input), 0,
                                 input->GetParameter("cluster-uuid"), host->IsClientModeEnabled());
    if (!removed) host->RefreshUnicastAgents("");
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
