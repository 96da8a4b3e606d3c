#pragma once

#include <string>
#include <vector>

#include "lab/model/AgentRecord.h"
#include "lab/model/Hosts.h"
#include "lab/store/Store.h"

namespace lab {

/// Adds a unicast agent of the host. Any agent but a witness has a UUID, which is not the host's. A
/// remote one names a cluster, which the lab need not know; any other one names a cluster of the
/// host, or none. There is one witness a cluster. While the cluster or one of the host's is
/// encrypted, it has a thumbprint. Throws KorelCtlException, also when the agent is there already.
void AddAgent(Store& store, const Host& host, const Agent& agent);
/// Removes the agent of that UUID, type, address, port and cluster. All zeros stand for any UUID,
/// an empty cluster UUID for any cluster; the one that was added first is taken then. Throws
/// KorelCtlException when there is none.
void RemoveAgent(Store& store, const Host& host, const Agent& agent);
/// Removes the host's agents of that cluster.
void DropAgentsOf(Store& store, const Host& host, const std::string& clusterUuid);
/// In the order of adding; of all clusters when the UUID is empty. Those that support no unicast
/// only with `all`.
std::vector<Agent> AgentsOf(Store& store, const Host& host, bool all,
                            const std::string& clusterUuid);
/// Of all hosts, as they stand in the lab, whatever that is.
std::vector<Agent> AllAgents(Store& store);
/// Those of the cluster, or all, as lines of text, each as AgentEntry makes it.
std::vector<std::string> AgentEntries(Store& store, const Host& host,
                                      const std::string& clusterUuid);
/// The addresses of the host's witness agents, in the order of adding.
std::vector<std::string> WitnessAddresses(Store& store, const Host& host);
/// The host has a node agent of that cluster, and all of them support unicast. Throws
/// KorelCtlException unless the host takes part in the cluster.
bool IsUnicast(Store& store, const Host& host, const std::string& clusterUuid);

}  // namespace lab
