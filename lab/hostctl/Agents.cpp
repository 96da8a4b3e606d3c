#include "lab/model/Agents.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "platform/hostctl/KorelUtil.h"

namespace lab {

using namespace Tovrin::Korel;

void LabKorelInfo::RefreshUnicastAgents(const std::string& text) {
  // The running configuration of a lab host follows its agents at once.
  Call("RefreshUnicastAgents", Arguments(text), [] {});
}

void LabKorelInfo::AddUnicastAgent(const std::string& agentUuid, KorelUnicastAgentType type,
                                   bool supportsUnicast, const std::string& address,
                                   std::int64_t port, bool hasBoundInterface,
                                   const std::string& boundInterface, const std::string& reserved,
                                   const std::string& certThumbprint,
                                   const std::string& clusterUuid) {
  Call("AddUnicastAgent",
       Arguments(agentUuid, type, supportsUnicast, address, port, hasBoundInterface, boundInterface,
                 reserved, certThumbprint, clusterUuid),
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
      Arguments(agentUuid, address, port, type, reserved, clusterUuid, clientMode),
      [&](Store& store, const Host& host) {
        RemoveAgent(store, host, {agentUuid, type, false, address, port, "", "", clusterUuid});
        return true;
      });
}

std::vector<std::string> LabKorelInfo::GetUnicastAgentEntries(const std::string& clusterUuid) {
  return Call("GetUnicastAgentEntries", AgentEntries, clusterUuid);
}

std::vector<std::string> LabKorelInfo::GetUnicastWitnesses() {
  return Call("GetUnicastWitnesses", WitnessAddresses);
}

void LabKorelInfo::GetUnicastAgents(std::vector<KorelUnicastAddressInfo>& agents, bool all,
                                    const std::string& clusterUuid) {
  const auto found = Call("GetUnicastAgents", AgentsOf, all, clusterUuid);
  agents.insert(agents.end(), found.begin(), found.end());
}

}  // namespace lab

namespace HskCtl::Korel {

void KorelUtil::GetUnicastModeForCluster(bool& isUnicast, const std::string& clusterUuid) {
  isUnicast = lab::Call("GetUnicastModeForCluster", lab::IsUnicast, clusterUuid);
}

KorelUtil::KorelInfo::KorelUnicastAddressInfo KorelUtil::KorelUnicastAddressInfoFromString(
    const std::string& text, bool strict) {
  lab::StrikeConversion("KorelUnicastAddressInfoFromString");
  return lab::ParseAgentEntry(text, strict);
}

}  // namespace HskCtl::Korel
