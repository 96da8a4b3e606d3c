#include "lab/model/Agents.h"

#include <algorithm>

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "lab/hostctl/Records.h"

namespace lab {

using namespace Tovrin::Korel;

void LabKorelInfo::RefreshUnicastAgents(const std::string& text) {
  // The running configuration of a lab host follows its agents at once.
  Call("RefreshUnicastAgents", Arguments(text), [](Store&, const Host&) {});
}

void LabKorelInfo::AddUnicastAgent(const std::string& agentUuid, KorelUnicastAgentType type,
                                   bool supportsUnicast, const std::string& address,
                                   std::int64_t port, bool hasBoundInterface,
                                   const std::string& boundInterface, const std::string& reserved,
                                   const std::string& certThumbprint,
                                   const std::string& clusterUuid) {
  Call("AddUnicastAgent",
       Arguments(agentUuid, Number(type), supportsUnicast, address, port, hasBoundInterface,
                 boundInterface, reserved, certThumbprint, clusterUuid),
       [&](Store& store, const Host& host) {
         AddAgent(store, host,
                  {agentUuid, type, supportsUnicast, address, port,
                   hasBoundInterface ? boundInterface : "", certThumbprint, clusterUuid});
       });
}

bool LabKorelInfo::RemoveUnicastAgent(const std::string& agentUuid, const std::string& address,
                                      std::int64_t port, KorelUnicastAgentType type, int reserved,
                                      const std::string& clusterUuid, bool clientMode) {
  return Call(
      "RemoveUnicastAgent",
      Arguments(agentUuid, address, port, Number(type), reserved, clusterUuid, clientMode),
      [&](Store& store, const Host& host) {
        RemoveAgent(store, host, {agentUuid, type, false, address, port, "", "", clusterUuid});
        return true;
      });
}

std::vector<std::string> LabKorelInfo::GetUnicastAgentEntries(const std::string& clusterUuid) {
  return Call("GetUnicastAgentEntries", Arguments(clusterUuid),
              [&](Store& store, const Host& host) {
                std::vector<std::string> entries;
                for (const Agent& agent : AgentsOf(store, host, clusterUuid)) {
                  entries.push_back(AgentEntry(agent));
                }
                return entries;
              });
}

std::vector<std::string> LabKorelInfo::GetUnicastWitnesses() {
  return Call("GetUnicastWitnesses", Arguments(), WitnessAddresses);
}

void LabKorelInfo::GetUnicastAgents(std::vector<KorelUnicastAddressInfo>& agents, bool all,
                                    const std::string& clusterUuid) {
  const auto found =
      Call("GetUnicastAgents", Arguments(all, clusterUuid),
           [&](Store& store, const Host& host) { return AgentsOf(store, host, clusterUuid); });
  std::copy_if(found.begin(), found.end(), std::back_inserter(agents),
               [&](const Agent& agent) { return all || agent.supportsUnicast; });
}

}  // namespace lab
