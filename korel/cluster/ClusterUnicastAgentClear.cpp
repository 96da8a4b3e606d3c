#include <algorithm>

#include "korel/cluster/Commands.h"
#include "korel/cluster/UnicastAddress.h"

namespace OstrelCli::KorelNamespace {
namespace {

using Agent = KorelInfo::KorelUnicastAddressInfo;

bool IsSame(const Agent& one, const Agent& other) {
  return one.nodeUuid == other.nodeUuid && one.isWitness == other.isWitness &&
         one.address == other.address && one.port == other.port &&
         one.subClusterUuid == other.subClusterUuid;
}

/// Adds the agents that are stored as entry texts and not yet among `agents`. Returns the refusal
/// of the first entry that cannot be read; empty when all can.
std::string AddStoredAgents(const HostControl& host, std::vector<Agent>& agents) {
  for (const std::string& entry : host->GetUnicastAgentEntries("")) {
    const auto failure = FailureOf([&] {
      const Agent stored = KorelUtil::KorelUnicastAddressInfoFromString(entry, true);
      const bool isKnown = std::any_of(agents.begin(), agents.end(),
                                       [&](const Agent& agent) { return IsSame(agent, stored); });
      if (!isKnown) agents.push_back(stored);
    });
    if (failure) {
      return StrCat("Invalid unicastAgent entry \"", entry, "\". Reason: ", *failure);
    }
  }
  return "";
}

}  // namespace

ClusterUnicastAgentClear::ClusterUnicastAgentClear() {
  SetDescription("Removes all unicast agents in the Korel cluster configuration.");
}

void ClusterUnicastAgentClear::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, "Unable to remove unicast agents: ", [&] {
    const HostControl host;
    const bool clientMode = host->IsClientModeEnabled();
    if (!host->GetClusterInfo(true)->enabled && !clientMode) {
      return Refuse(output, "Korel isn't enabled on the host");
    }
    const bool isWitness = KorelUtil::GetNodeType() == KorelNodeType::Witness;
    std::vector<Agent> agents;
    host->GetUnicastAgents(agents, true, "");
    if (const std::string refusal = AddStoredAgents(host, agents); !refusal.empty()) {
      return Refuse(output, refusal);
    }
    // All are checked before the first is removed.
    for (const Agent& agent : agents) {
      if (!IsIpAddress(agent.address)) return Refuse(output, InvalidAddress(agent.address));
    }
    for (const Agent& agent : agents) {
      // On a witness the same agent may stand for several clusters; elsewhere there is only one.
      host->RemoveUnicastAgent(agent.nodeUuid, agent.address, agent.port, agent.isWitness, 0,
                               isWitness ? agent.subClusterUuid : "", clientMode);
    }
    host->RefreshUnicastAgents("");
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
