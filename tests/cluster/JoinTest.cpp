#include "tests/support/RecordingHost.h"

namespace test {
namespace {

const Hosts kHosts = {
    {"no feature", [](RecordingHost& host) { host.clientModeFeature = false; }},
    {"odd random", [](RecordingHost& host) { host.randomUuid = "no uuid"; }},
};

/// A witness is told the longest name, of two bytes a character.
Names JoinNames() {
  std::string longest;
  for (int i = 0; i < 256; ++i) longest += "\xC3\xBC";
  return {{"$join", "cluster join -u $A"},
          {"$checks", "GetNodeType | GetClusterInfo true | IsClientModeEnabled"},
          {"$client mode",
           "The host is in a Korel client cluster and enabled for Korel client mode. "
           "You need to remove it from the cluster or disable client mode."},
          {"$longest", longest},
          {"$too long", std::string(257, 'f')}};
}

TEST(ClusterJoin, JoinsInEveryRole) {
  Check(kHosts, JoinNames(), R"(
$join -> true <- $checks | JoinCluster $A 0 "" false 0 0
! error: no luck | false
[GetNodeType fails] $join -> error: no luck | false <- GetNodeType
$join -w -> true <- $checks | JoinCluster $A 0 "" true 0 0
$join -m -> true <- $checks | JoinCluster $A 2 "" false 0 0
$join -wt -p fd1 -> true <- $checks | JoinCluster $A 1 fd1 true 0 0
$join -t -p $longest -> true <- $checks | JoinCluster $A 1 $longest false 0 0
[enabled, witness] $join -t -p fd1 -> true <- $checks | JoinCluster $A 1 fd1 false 0 0
$join -wc -> true <- IsFeatureEnabled 373 | $checks | JoinClientCluster $A false
)");
}

TEST(ClusterJoin, RefusesInOrder) {
  Check(kHosts, JoinNames(), R"(
[no feature] $join -ctm -> error: Client Mode is not supported. | none <- IsFeatureEnabled 373
[enabled] $join -tm -> error: Both --witness-node and --metadata-node cannot be set at the same time. Specify only one. | none
[enabled] $join -t -> error: The host is in a Korel cluster and not a Korel witness host. You need
  to remove it from the cluster or disable Korel. | none <- GetNodeType | GetClusterInfo true
[client] $join -t -> error: $client mode | none <- $checks
$join -ct -> error: If --witness-node is specified, --witness-preferred-fault-domain must also be specified. | none <- IsFeatureEnabled 373 | $checks
$join -t -p '' / $join -t -p $too long -> error: Preferred fault domain name cannot be empty or exceed 256 characters. | none <- $checks
$join -ct -p fd1 / $join -cm -> error: Client mode is not supported for witness or metadata node | none <- IsFeatureEnabled 373 | $checks
$join -p fd1 -> error: --witness-preferred-fault-domain is valid only when --witness-node is specified. | none <- $checks
$join -cm -p '' -> error: --witness-preferred-fault-domain is valid only when --witness-node is specified. | none <- IsFeatureEnabled 373 | $checks
cluster join -u 1 -> error: '1' is not a UUID of the form "nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn" | false <- $checks
)");
}

TEST(ClusterNew, CreatesAndRefuses) {
  Names names = JoinNames();
  names["$made"] = "GetClusterInfo true | IsClientModeEnabled | UUID_CreateRandom";
  Check(kHosts, names, R"(
cluster new -> true <- $made | CreateCluster $random true false
! error: Unable to create the new Korel cluster: no luck | false
cluster new -c -> true <- $made | IsFeatureEnabled 373 | JoinClientCluster $random false
[no feature] cluster new -c -> error: Client Mode is not supported. | none <- $made | IsFeatureEnabled 373
[enabled, witness] cluster new -> error: The host is in a Korel cluster and enabled for Korel. You
  need to remove it from the cluster or disable Korel. | none <- GetClusterInfo true
[client] cluster new -> error: $client mode | none <- GetClusterInfo true | IsClientModeEnabled
[no random] cluster new / [odd random] cluster new -> error: Unable to generate a UUID | none <- $made
)");
}

}  // namespace
}  // namespace test
