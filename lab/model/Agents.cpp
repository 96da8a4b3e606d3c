#include "lab/model/Agents.h"

#include <algorithm>

#include "lab/common/Text.h"
#include "lab/common/Uuids.h"
#include "lab/model/Clusters.h"
#include "lab/model/NetworkConfig.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelUnicastAgentType;

std::string Describe(const Agent& agent) {
  return Tovrin::Misc::StrCat(AgentTypeName(agent.isWitness), " agent ", agent.nodeUuid, " at ",
                              agent.address, " port ", std::to_string(agent.port));
}

void CheckWhoAndWhere(Store& store, const Host& host, const Agent& agent) {
  const bool namesCluster = agent.subClusterUuid != kZeroUuid;
  if (agent.isWitness != KorelUnicastAgentType::Witness && agent.nodeUuid == kZeroUuid) {
    Fail("a ", AgentTypeName(agent.isWitness), " agent must have a UUID");
  }
  if (agent.isWitness == KorelUnicastAgentType::Remote) {
    if (!namesCluster) Fail("a remote agent must name its cluster");
  } else if (namesCluster) {
    RequireMember(store, host, agent.subClusterUuid);
  }
  if (!agent.interfaceName.empty()) CheckHasInterface(store, host, agent.interfaceName);
}

void CheckOnlyWitness(const std::vector<Agent>& agents) {
  const auto witness = std::find_if(agents.begin(), agents.end(), [](const Agent& agent) {
    return agent.isWitness == KorelUnicastAgentType::Witness;
  });
  if (witness != agents.end()) {
    Fail("there is a unicast witness already, ", witness->address);
  }
}

bool IsSame(const Agent& one, const Agent& other) {
  return one.nodeUuid == other.nodeUuid && one.isWitness == other.isWitness &&
         one.address == other.address && one.port == other.port;
}

}  // namespace

void AddAgent(Store& store, const Host& host, const Agent& agent) {
  const Agent added = CheckedAgent(agent);
  CheckWhoAndWhere(store, host, added);
  const auto agents = AgentsOf(store, host, added.subClusterUuid);
  for (const Agent& known : agents) {
    if (IsSame(known, added)) Fail("there is a ", Describe(added), " already");
  }
  if (added.isWitness == KorelUnicastAgentType::Witness) CheckOnlyWitness(agents);
  Execute(store,
          "INSERT INTO agents (host, uuid, type, supportsUnicast, address, port, interface, "
          "thumbprint, cluster) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
          host.id, added.nodeUuid, static_cast<int>(added.isWitness), added.supportsUnicast ? 1 : 0,
          added.address, added.port, added.interfaceName, added.certThumbprint,
          added.subClusterUuid);
}

void RemoveAgent(Store& store, const Host& host, const Agent& agent) {
  const Agent removed = CheckedAgent(agent);
  const std::string cluster = agent.subClusterUuid.empty() ? "" : removed.subClusterUuid;
  const std::string zeros(kZeroUuid);
  // Of several that fit, the one with the very UUID goes before those that fit as "any".
  const int count =
      Execute(store,
              "DELETE FROM agents WHERE id = (SELECT id FROM agents WHERE host = ?1 AND type = ?2 "
              "AND address = ?3 AND port = ?4 AND (uuid = ?5 OR ?5 = ?6) AND (cluster = ?7 OR "
              "?7 = '') ORDER BY uuid = ?5 DESC, id LIMIT 1)",
              host.id, static_cast<int>(removed.isWitness), removed.address, removed.port,
              removed.nodeUuid, zeros, cluster);
  if (count == 0) {
    Fail("there is no ", Describe(removed), cluster.empty() ? "" : " of cluster " + cluster);
  }
}

void DropAgentsOf(Store& store, const Host& host, const std::string& clusterUuid) {
  Execute(store, "DELETE FROM agents WHERE host = ? AND cluster = ?", host.id, clusterUuid);
}

std::vector<Agent> AgentsOf(Store& store, const Host& host, const std::string& clusterUuid) {
  Rows rows =
      Query(store,
            "SELECT uuid, type, supportsUnicast, address, port, interface, thumbprint, cluster "
            "FROM agents WHERE host = ?1 AND (cluster = ?2 OR ?2 = '') ORDER BY id",
            host.id, clusterUuid.empty() ? clusterUuid : CanonicalUuid(clusterUuid));
  std::vector<Agent> agents;
  while (rows.executeStep()) {
    agents.push_back({rows.getColumn(0).getString(),
                      static_cast<KorelUnicastAgentType>(rows.getColumn(1).getInt()),
                      rows.getColumn(2).getInt() != 0, rows.getColumn(3).getString(),
                      rows.getColumn(4).getInt64(), rows.getColumn(5).getString(),
                      rows.getColumn(6).getString(), rows.getColumn(7).getString()});
  }
  return agents;
}

bool IsUnicast(Store& store, const Host& host, const std::string& clusterUuid) {
  bool hasNode = false;
  for (const Agent& agent : AgentsOf(store, host, clusterUuid)) {
    if (agent.isWitness != KorelUnicastAgentType::Node) continue;
    if (!agent.supportsUnicast) return false;
    hasNode = true;
  }
  return hasNode;
}

}  // namespace lab
