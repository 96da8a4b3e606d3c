#include "tests/support/RecordingHost.h"

namespace test {
namespace {

using Tovrin::Korel::KorelUnicastAgentType;

void HaveAgents(RecordingHost& host) {
  host.enabled = true;
  host.agents = {{"n1", KorelUnicastAgentType::Node, true, "10.0.0.1", 5, "", "", "own"},
                 {"stored", KorelUnicastAgentType::Node, false, "10.0.0.2", 0, "", "", ""},
                 {"stored", KorelUnicastAgentType::Node, false, "10.0.0.3", 6, "", "", ""}};
}

const Hosts kHosts = {
    {"own", [](RecordingHost& host) { host.clusterUuid = "own"; }},
    {"in a", [](RecordingHost& host) { host.joinedClusters.push_back("a"); }},
    {"in b", [](RecordingHost& host) { host.joinedClusters.push_back("b"); }},
    {"encrypted", [](RecordingHost& host) { host.encryption = true; }},
    {"no metadata", [](RecordingHost& host) { host.metadataFeature = false; }},
    {"of w1", [](RecordingHost& host) { host.witnesses.push_back("w1"); }},
    {"of w2", [](RecordingHost& host) { host.witnesses.push_back("w2"); }},
    {"stale", [](RecordingHost& host) { host.agentRemoved = false; }},
    {"agents", HaveAgents},
    {"entry 2", [](RecordingHost& host) { host.agentEntries.push_back("10.0.0.2"); }},
    {"entry 3", [](RecordingHost& host) { host.agentEntries.push_back("10.0.0.3"); }},
    {"bad entry", [](RecordingHost& host) { host.agentEntries.push_back("bad one"); }},
    {"bad address", [](RecordingHost& host) { host.agents[1].address = "nonsense"; }},
    {"remote",
     [](RecordingHost& host) {
       host.agents = {
           {"r1", KorelUnicastAgentType::Remote, true, "fe80::1", 5, "hsk1", "ab", "far"}};
     }},
};
/// The calls of "add" up to the type, which asks for the metadata feature unless it is a node's.
const Names kNames = {
    {"$none", "00000000-0000-0000-0000-000000000000"},
    {"$begun",
     "GetJoinedClusterUuids | GetClusterUuid | IsDataInTransitEncryptionEnabled own true"},
    {"$feature", "IsKorelMetadataNodeFeatureEnabled"},
    {"$agent", "cluster unicastagent"},
    {"$add", "cluster unicastagent add -a 10.0.0.1"}};

TEST(UnicastAgentAdd, AddsEveryType) {
  Check(kHosts, kNames, R"(
[own] $add / [own, encrypted] $add -T '' -> true <- $begun | GetUnicastWitnesses | AddUnicastAgent $none 1 false 10.0.0.1 12321 false "" "" "" own
[own] $add -t node -u n1 -U true -p 5 -i hsk1 -T ab:cd -> true <- $begun | AddUnicastAgent n1 0 true 10.0.0.1 5 true hsk1 "" ab:cd own | RefreshUnicastAgents ""
[own] $add -t metadata -u m1 -i '' -> true <- $begun | $feature | AddUnicastAgent m1 2 false 10.0.0.1 12321 true "" "" "" own
[own, no metadata] $add -t metadata -u m1 -> true <- $begun | $feature | GetUnicastWitnesses | AddUnicastAgent m1 1 false 10.0.0.1 12321 false "" "" "" own
[own] $agent add -a fe80::1 -t remote -u r1 -c far -> true <- IsDataInTransitEncryptionEnabled far
  true | $feature | AddUnicastAgent r1 3 true fe80::1 12321 false "" "" "" far
)");
}

TEST(UnicastAgentAdd, RefusesInOrder) {
  Check(kHosts, kNames, R"(
[in a, in b] $agent add -a nonsense -> error: Please specify the cluster uuid for shared witness host. | none <- GetJoinedClusterUuids
[own] $agent add -t node -a nonsense -> error: Can not add unicastagent without specifying node-uuid | none <- $begun
[own] $agent add -t node -u n1 -a nonsense -> error: Can not add unicastagent without specifying unicast support | none <- $begun
[own, encrypted] $agent add -a 10.0.0.256 -> error: Invalid IP address 10.0.0.256 | none <- $begun
[own, encrypted] $add -> error: Error: cert-thumbprint is required to enable Korel data-in-transit encryption. | none <- $begun
[own, of w1] $add -> error: Korel does not support connecting to more than one unicast witness, and
  there is already a unicast witness configured: w1. | none <- $begun | GetUnicastWitnesses
[own, of w1, of w2] $add -> error: Korel does not support connecting to more than
  one unicast witness, and there are already multiple unicast witnesses configured: w1,w2. | none <-
  $begun | GetUnicastWitnesses
[own] $add -t remote -u r1 -> error: Can not add remote server node without specifying cluster uuid | none <- $begun | $feature
[AddUnicastAgent fails] $add -c own -> error: no luck | none <- IsDataInTransitEncryptionEnabled own
  true | GetUnicastWitnesses | AddUnicastAgent $none 1 false 10.0.0.1 12321 false "" "" "" own
[own] $add -t Node -> usage: option "--type" takes one of "witness", "node", "metadata", "remote", not "Node", did you mean "node"?
)");
}

TEST(UnicastAgentRemove, RemovesANodeUnlessTold) {
  Check(kHosts, kNames, R"(
$agent remove -a 10.0.0.1 -> true <- IsClientModeEnabled | RemoveUnicastAgent $none 10.0.0.1 12321 0 0 "" false
[stale, client] $agent remove -a 10.0.0.1 -t metadata -u m1 -p 7 -c own -> true <-
  IsClientModeEnabled | RemoveUnicastAgent m1 10.0.0.1 7 2 0 own true | RefreshUnicastAgents ""
)");
}

TEST(UnicastAgentClear, RemovesRecordsAndStoredEntriesOnce) {
  Names names = kNames;
  names["$asked"] =
      "IsClientModeEnabled | GetClusterInfo true | GetNodeType | GetUnicastAgents true \"\"";
  names["$both"] = names["$asked"] + " | GetUnicastAgentEntries \"\"";
  Check(kHosts, names, R"(
$agent clear -> error: Korel isn't enabled on the host | none <- IsClientModeEnabled | GetClusterInfo true
[agents, entry 2, entry 3] $agent clear -> true <- $both | RemoveUnicastAgent n1 10.0.0.1 5 0 0 "" false
  | RemoveUnicastAgent stored 10.0.0.2 0 0 0 "" false | RemoveUnicastAgent stored 10.0.0.3 6 0 0 ""
  false | RemoveUnicastAgent stored 10.0.0.3 0 0 0 "" false | RefreshUnicastAgents ""
[agents, witness] $agent clear -> true <- $both | RemoveUnicastAgent n1 10.0.0.1 5 0 0 own false
  | RemoveUnicastAgent stored 10.0.0.2 0 0 0 "" false | RemoveUnicastAgent stored 10.0.0.3 6 0 0 ""
  false | RefreshUnicastAgents ""
[agents, entry 2, bad entry] $agent clear -> error: Invalid unicastAgent entry "bad one". Reason: cannot read it | none <- $both
[agents, bad address] $agent clear -> error: Invalid IP address nonsense | none <- $both
)");
}

TEST(UnicastAgentList, ShowsTheTypeAsANumber) {
  Check(kHosts, kNames, R"(
$agent list -> [] <- GetUnicastAgents true ""
[remote] $agent list -> [UnicastAgentList{NodeUuid=r1, IsWitness=3, Supports Unicast=true,
  IP Address=fe80::1, Port=5, Iface Name=hsk1, Cert Thumbprint=ab, SubClusterUuid=far}]
  <- GetUnicastAgents true ""
)");
}

}  // namespace
}  // namespace test
