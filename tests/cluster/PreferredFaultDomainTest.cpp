#include "tests/support/RecordingHost.h"

namespace test {
namespace {

void Stretched(RecordingHost& host) {
  host.enabled = true;
  host.stretched = true;
  host.clusterUuid = "b";
  host.joinedClusters = {"a", "b"};
  host.preferred = {{"a", "fd1"}, {"b", "fd2"}};
}
void NotStretched(RecordingHost& host) { host.enabled = true; }
std::function<void(RecordingHost&)> Witness(const std::vector<std::string>& clusters) {
  return [clusters](RecordingHost& host) {
    host.nodeType = Tovrin::Korel::KorelNodeType::Witness;
    host.joinedClusters = clusters;
    host.clusterUuid = "own";
  };
}
void StretchedWitness(RecordingHost& host) {
  Stretched(host);
  host.nodeType = Tovrin::Korel::KorelNodeType::Witness;
}

TEST(PreferredFaultDomain, IsReadOfStretchedClustersOnly) {
  const std::string get = "cluster preferredfaultdomain get";
  const std::string list = "cluster preferredfaultdomain list";
  const std::string asked = "GetClusterInfo true | IsInStretchedCluster";
  const std::string notStretched =
      "error: Cannot get preferred fault domain if host is not in a stretched cluster. | none";
  Check({
      {get + " -u a", nullptr, notStretched, "GetClusterInfo true"},
      {get + " -u a", NotStretched, notStretched, asked},
      {get, Stretched,
       "PreferredFaultDomain{Cluster UUID=b, Preferred Fault Domain Name=fd2, Preferred Fault "
       "Domain "
       "Id=id of fd2}",
       asked + " | GetClusterUuid | GetPreferredFaultDomainInfo b"},
      {get + " -u a", Stretched,
       "PreferredFaultDomain{Cluster UUID=a, Preferred Fault Domain Name=fd1, Preferred Fault "
       "Domain "
       "Id=id of fd1}",
       asked + " | GetPreferredFaultDomainInfo a"},
      {get, Failing("GetClusterUuid", StretchedWitness),
       "error: Unable to get preferred fault domain name: no luck | none",
       asked + " | GetClusterUuid"},
      {list, NotStretched,
       "error: Cannot list preferred fault domain if host is not in a stretched cluster. | none",
       asked},
      {list, Stretched,
       "[PreferredFaultDomainList{Sub-Cluster UUID=a, Name=fd1, ID=id of fd1}, "
       "PreferredFaultDomainList{Sub-Cluster UUID=b, Name=fd2, ID=id of fd2}]",
       asked + " | GetJoinedClusterUuids | GetPreferredFaultDomainInfo a | "
               "GetPreferredFaultDomainInfo b"},
      {list, Failing("GetPreferredFaultDomainInfo", StretchedWitness),
       "error: Unable to list preferred fault domain name: no luck | none",
       asked + " | GetJoinedClusterUuids | GetPreferredFaultDomainInfo a"},
  });
}

TEST(PreferredFaultDomain, IsSetOnAWitness) {
  const std::string set = "cluster preferredfaultdomain set -n ";
  const std::string name(256, 'f');
  const std::string shared =
      "error: This host is working as a shared witness. Parameter cluster-uuid is required to "
      "specify target cluster. | none";
  Check({
      {set + "''", nullptr, "error: Cannot set preferred fault domain name as empty. | none", ""},
      {set + name + "f", nullptr,
       "error: Preferred Fault domain name cannot exceed 256 characters. | none", ""},
      {set + name, nullptr,
       "error: Cannot set preferred fault domain if the host is not a witness node. | true",
       "GetNodeType"},
      {set + "fd1", Witness({}), shared, "GetNodeType | GetJoinedClusterUuids"},
      {set + "fd1 -u ''", Witness({"a", "b"}), shared, "GetNodeType | GetJoinedClusterUuids"},
      {set + name, Witness({"a"}), "true",
       "GetNodeType | GetJoinedClusterUuids | GetClusterUuid | SetPreferredFaultDomain " + name +
           " own"},
      {set + "fd1 -u b", Witness({"a", "b"}), "true",
       "GetNodeType | SetPreferredFaultDomain fd1 b"},
      {set + "fd1 -u b", Failing("SetPreferredFaultDomain", StretchedWitness),
       "error: Unable to set preferred fault domain name: no luck | none",
       "GetNodeType | SetPreferredFaultDomain fd1 b"},
  });
}

}  // namespace
}  // namespace test
