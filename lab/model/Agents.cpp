#include "lab/model/Agents.h"

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/ClusterFacts.h"
#include "lab/model/Clusters.h"
#include "lab/model/NetworkConfig.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelUnicastAgentType;

/// Without a UUID of all zeros, which nobody need have typed.
std::string Describe(const Agent& agent) {
  return Tovrin::Misc::StrCat(AgentTypeName(agent.isWitness), " agent ",
                              agent.nodeUuid == kZeroUuid ? "" : agent.nodeUuid + " ", "at ",
                              agent.address, " port ", std::to_string(agent.port));
}

void CheckWhoAndWhere(Store& store, const Host& host, const Agent& agent) {
  const bool namesCluster = agent.subClusterUuid != kZeroUuid;
  if (agent.isWitness != KorelUnicastAgentType::Witness && agent.nodeUuid == kZeroUuid) {
    Fail("a ", AgentTypeName(agent.isWitness), " agent must have a UUID, by --uuid");
  }
  if (agent.nodeUuid == host.nodeUuid) {
    Fail("agent UUID ", agent.nodeUuid,
         " is this host's own; 'korel cluster get' on another host shows that one's");
  }
  if (agent.isWitness == KorelUnicastAgentType::Remote) {
    if (!namesCluster) Fail("a remote agent must name its cluster, by --cluster-uuid");
  } else if (namesCluster) {
    RequireMember(store, host, agent.subClusterUuid);
  }
  if (!agent.interfaceName.empty()) CheckHasInterface(store, host, agent.interfaceName);
}

void CheckUnknown(Store& store, const Host& host, const Agent& agent) {
  if (Exists(store,
             "SELECT 1 FROM agents WHERE host = ? AND uuid = ? AND type = ? AND address = ? "
             "AND port = ? AND cluster = ?",
             host.id, agent.nodeUuid, static_cast<int>(agent.isWitness), agent.address, agent.port,
             agent.subClusterUuid)) {
    Fail("there is a ", Describe(agent),
         " already; 'korel cluster unicastagent remove' takes it away");
  }
}

/// `type` is the text of the option's value.
std::string RemovedBy(const std::string& type, const Row& addressAndPort) {
  return Tovrin::Misc::StrCat("; 'korel cluster unicastagent remove --type ", type, " --addr ",
                              addressAndPort.Text(0), " --port ",
                              std::to_string(addressAndPort.Number(1)), "' removes it");
}

void CheckOnlyWitness(Store& store, const Host& host, const Agent& agent) {
  Query row(store,
            "SELECT address, port FROM agents WHERE host = ? AND cluster = ? AND type = ? "
            "ORDER BY id",
            host.id, agent.subClusterUuid, static_cast<int>(KorelUnicastAgentType::Witness));
  if (!row.Next()) return;
  Fail("there is a unicast witness already, ", row.Text(0), RemovedBy("witness", row));
}

/// What enabling encryption asks of all agents.
void CheckMayLackThumbprint(Store& store, const Host& host, const std::string& named) {
  std::vector<std::string> clusters = JoinedClusterUuids(store, host);
  clusters.push_back(named);
  for (const std::string& cluster : clusters) {
    if (!EncryptionOf(store, cluster).isEnabled) continue;
    Fail("cluster ", cluster, " is encrypted, and an agent needs a thumbprint then, by ",
         "--cert-thumbprint");
  }
}

/// An agent of another type at the same place, which may have been meant.
std::string HintAtOthers(Store& store, const Host& host, const Agent& agent) {
  Query row(store,
            "SELECT address, port, type FROM agents WHERE host = ? AND address = ? AND port = ? "
            "AND type <> ? ORDER BY id",
            host.id, agent.address, agent.port, static_cast<int>(agent.isWitness));
  if (!row.Next()) return "; 'korel cluster unicastagent list' shows those there are";
  const std::string type = AgentTypeName(static_cast<KorelUnicastAgentType>(row.Number(2)));
  return Tovrin::Misc::StrCat("; there is a ", type, " agent at ", row.Text(0),
                              RemovedBy(type, row));
}

/// The agents that the condition chooses.
template <typename... Values>
std::vector<Agent> AgentsWhere(Store& store, const char* condition, const Values&... values) {
  const std::string sql = Tovrin::Misc::StrCat(
      "SELECT uuid, type, supportsUnicast, address, port, interface, thumbprint, cluster "
      "FROM agents ",
      condition, " ORDER BY id");
  std::vector<Agent> agents;
  for (const Row& row : Query(store, sql.c_str(), values...)) {
    agents.push_back({row.Text(0), static_cast<KorelUnicastAgentType>(row.Number(1)), row.Flag(2),
                      row.Text(3), row.Number(4), row.Text(5), row.Text(6), row.Text(7)});
  }
  return agents;
}

}  // namespace

void AddAgent(Store& store, const Host& host, const Agent& agent) {
  const Agent added = CheckedAgent(agent);
  CheckWhoAndWhere(store, host, added);
  CheckUnknown(store, host, added);
  if (added.isWitness == KorelUnicastAgentType::Witness) CheckOnlyWitness(store, host, added);
  if (added.certThumbprint.empty()) CheckMayLackThumbprint(store, host, added.subClusterUuid);
  Execute(store,
          "INSERT INTO agents (host, uuid, type, supportsUnicast, address, port, interface, "
          "thumbprint, cluster) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)",
          host.id, added.nodeUuid, static_cast<int>(added.isWitness), added.supportsUnicast,
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
    Fail("there is no ", Describe(agent),
         cluster.empty() ? "" : " of cluster " + agent.subClusterUuid,
         HintAtOthers(store, host, removed));
  }
}

void DropAgentsOf(Store& store, const Host& host, const std::string& clusterUuid) {
  Execute(store, "DELETE FROM agents WHERE host = ? AND cluster = ?", host.id, clusterUuid);
}

std::vector<Agent> AgentsOf(Store& store, const Host& host, bool all,
                            const std::string& clusterUuid) {
  auto agents = clusterUuid.empty() ? AgentsWhere(store, "WHERE host = ?", host.id)
                                    : AgentsWhere(store, "WHERE host = ? AND cluster = ?", host.id,
                                                  CanonicalUuid(clusterUuid));
  if (!all) std::erase_if(agents, [](const Agent& agent) { return !agent.supportsUnicast; });
  return agents;
}

std::vector<Agent> AllAgents(Store& store) { return AgentsWhere(store, ""); }

std::vector<std::string> AgentEntries(Store& store, const Host& host,
                                      const std::string& clusterUuid) {
  std::vector<std::string> entries;
  for (const Agent& agent : AgentsOf(store, host, true, clusterUuid)) {
    entries.push_back(AgentEntry(agent));
  }
  return entries;
}

std::vector<std::string> WitnessAddresses(Store& store, const Host& host) {
  return Texts(store, "SELECT address FROM agents WHERE host = ? AND type = 1 ORDER BY id",
               host.id);
}

bool IsUnicast(Store& store, const Host& host, const std::string& clusterUuid) {
  const Membership own = RequireMember(store, host, clusterUuid);
  Query row(store,
            "SELECT min(supportsUnicast) FROM agents WHERE host = ? AND cluster = ? AND type = ?",
            host.id, own.clusterUuid, static_cast<int>(KorelUnicastAgentType::Node));
  row.Next();
  // Without a node agent there is no least one, and NULL reads as 0.
  return row.Flag(0);
}

}  // namespace lab
