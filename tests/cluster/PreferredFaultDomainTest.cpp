#include "tests/support/RecordingHost.h"

namespace test {

const Hosts kHosts = {
    {"stretched",
     [](RecordingHost& host) {
       host.enabled = host.stretched = true;
       host.clusterUuid = "b";
       host.joinedClusters = {"a", "b"};
       host.preferred = {{"a", "fd1"}, {"b", "fd2"}};
     }},
    {"in a", [](RecordingHost& host) { host.joinedClusters = {"a"}; }},
    {"own", [](RecordingHost& host) { host.clusterUuid = "own"; }},
};

TEST(PreferredFaultDomain, IsReadOfStretchedClustersOnly) {
  const Names names = {{"$get", "cluster preferredfaultdomain get"},
                       {"$list", "cluster preferredfaultdomain list"},
                       {"$asked", "GetClusterInfo true | IsInStretchedCluster"},
                       {"$found", "Preferred Fault Domain"}};
  Check(kHosts, names, R"(
[enabled] $get -u a -> error: Cannot get preferred fault domain if host is not in a stretched cluster. | none <- $asked
[stretched] $get -> PreferredFaultDomain{Cluster UUID=b, $found Name=fd2, $found Id=id of fd2} <- $asked | GetClusterUuid | GetPreferredFaultDomainInfo b
[stretched] $get -u a -> PreferredFaultDomain{Cluster UUID=a, $found Name=fd1, $found Id=id of fd1} <- $asked | GetPreferredFaultDomainInfo a
[enabled] $list -> error: Cannot list preferred fault domain if host is not in a stretched cluster. | none <- $asked
[stretched] $list -> [PreferredFaultDomainList{Sub-Cluster UUID=a, Name=fd1, ID=id of fd1},
  PreferredFaultDomainList{Sub-Cluster UUID=b, Name=fd2, ID=id of fd2}]
  <- $asked | GetJoinedClusterUuids | GetPreferredFaultDomainInfo a | GetPreferredFaultDomainInfo b
)");
}

TEST(PreferredFaultDomain, IsSetOnAWitness) {
  const Names names = {{"$set", "cluster preferredfaultdomain set"},
                       {"$longest", std::string(256, 'f')}};
  Check(kHosts, names, R"(
$set -n '' -> error: Cannot set preferred fault domain name as empty. | none
$set -n $longestf -> error: Preferred Fault domain name cannot exceed 256 characters. | none
$set -n $longest -> error: Cannot set preferred fault domain if the host is not a witness node. | true <- GetNodeType
[witness] $set -n fd1 / [stretched, witness] $set -n fd1 -u '' -> error: This host is working as a
  shared witness. Parameter cluster-uuid is required to specify target cluster. | none
  <- GetNodeType | GetJoinedClusterUuids
[own, in a, witness] $set -n $longest -> true <- GetNodeType | GetJoinedClusterUuids | GetClusterUuid | SetPreferredFaultDomain $longest own
[stretched, witness] $set -n fd1 -u a -> true <- GetNodeType | SetPreferredFaultDomain fd1 a
)");
}

}  // namespace test
