#include "korel/cluster/Commands.h"
#include "tests/support/RecordingHost.h"

namespace test {
namespace {

const std::string kA = "aaaaaaaa-0000-0000-0000-000000000001";
const std::string kB = "bbbbbbbb-0000-0000-0000-000000000002";

void InTwo(RecordingHost& host) {
  host.enabled = true;
  host.joinedClusters = {kA, kB};
  host.datastores = {{"1", "ds1", kA, true}, {"2", "ds2", kB, false}};
}

TEST(ClusterLeave, NotifiesAndLeaves) {
  const std::string notify = "[/usr/lib/ostrel/hostd/bin/notifyDatastore -t ";
  const Names names = {
      {"$before", "GetClusterInfo true | GetDatastores | " + notify + "PreUnmount -d ds1,ds2]"},
      {"$failed", notify + "FailedUnmount -d ds1,ds2]"},
      {"$notify", notify}};
  // Where no datastore is, the list of names is empty, and the blank before it stays.
  Check({{"in two", InTwo}}, names, R"(
cluster leave -> error: The host is not in a Korel or client cluster. | none <- GetClusterInfo true | IsClientModeEnabled
[client] cluster leave -> true <- GetClusterInfo true | IsClientModeEnabled | GetDatastores | $notifyPreUnmount -d ] | GetJoinedClusterUuids
[in two] cluster leave / [in two] cluster leave -u '' -> true <- $before | GetJoinedClusterUuids | LeaveCluster $A false | LeaveCluster $B false
[in two] cluster leave -u $B -> true <- $before | LeaveCluster $B false
[in two, GetDatastores fails] cluster leave -> error: no luck | none <- GetClusterInfo true | GetDatastores
[in two, GetJoinedClusterUuids fails] cluster leave -> error: no luck | none <- $before | GetJoinedClusterUuids | $failed
[in two, LeaveCluster fails] cluster leave -> error: no luck | none <- $before | GetJoinedClusterUuids | LeaveCluster $A false | $failed
)");
}

TEST(ClusterRestore, PassesNoBootStage) {
  Check(R"(
cluster restore -> true <- RestoreCluster false false
! error: no luck | none
cluster restore --boot -> usage: unknown option "--boot"
)");
}

TEST(ClusterRestore, OffersTheBootStagesWhenBuiltWithThem) {
  const std::tuple<bool, bool, const char*> cases[] = {
      {true, false, "RestoreCluster true false"},
      {false, true, "RestoreCluster false true"},
      {true, true, "Flags boot and postboot are mutually exclusive"}};
  for (const auto& [boot, postboot, told] : cases) {
    RecordingHost host;
    const auto command = OstrelCli::KorelNamespace::ClusterRestore::New(true);
    EXPECT_EQ(command->GetInputSpec()->GetParameters().size(), 2U);
    const auto input = Corvex::CallSpec::Input::New();
    input->Declare(*command->GetInputSpec());
    if (boot) input->SetParameter("boot", true);
    if (postboot) input->SetParameter("postboot", true);
    const auto output = Corvex::CallSpec::Output::New();
    command->GetDispatcher()->Execute(input, output);
    for (const auto& message : output->GetErrorMessages()) host.calls.push_back(message);
    EXPECT_EQ(host.calls, std::vector<std::string>{told});
  }
}

TEST(KorelMax, IsOnlyForHostsWithoutDisks) {
  const auto disk = [](RecordingHost& host) { host.disks = {{"x", kA}}; };
  Check({{"disk", disk}}, {{"$set", "cluster korelmax set -e"}}, R"(
[enabled] $set true -> true <- GetClusterInfo true | GetKorelDisks 1 | SetKorelMaxEnabled true
[enabled, disk] $set true -> error: The host has diskgroups on it. Korel Max cannot be configured. | none <- GetClusterInfo true | GetKorelDisks 1
[enabled, disk] $set false -> true <- GetClusterInfo true | GetKorelDisks 1 | SetKorelMaxEnabled false
)");
}

TEST(ClusterInformation, IsShownOfOneAndOfAll) {
  const auto member = [](RecordingHost& host) {
    host.clusterUuid = kA;
    host.cluster = {"", "WITNESS", "HEALTHY", {"m1", "m2"}, {7, "then"}};
  };
  const auto rebooted = [](RecordingHost& host) { host.inactiveClusters = {kA, kB}; };
  const auto clientMember = [](RecordingHost& host) { host.joinedClusters = {kA}; };
  const auto max = [](RecordingHost& host) { host.isKorelMax = true; };
  const auto asked = [](const std::string& uuid) {
    return "GetInfoFromHXDS " + uuid + " | GetUnicastModeForCluster " + uuid +
           " | GetNodeType | IsDataInTransitEncryptionEnabled " + uuid + " true";
  };
  const Names names = {
      {"$own", "Current Local Time=now, Node UUID=node"},
      {"$node", "Node Type=WITNESS, Node Role=WITNESS, Node Health=HEALTHY"},
      {"$state", "Fault Domain=fd1, Maintenance Mode=OFF"},
      {"$members",
       "Member Count=2, Member UUIDs=[m1, m2], Unicast Mode=true, Data-in-Transit "
       "Encryption=false, Configuration Generation=7, Configuration Time=then"},
      {"$no cluster",
       "Node Type=-, Node Role=-, Node Health=-, Fault Domain=fd1, Maintenance Mode=OFF, "
       "Sub-Cluster UUID=-, Member Count=-, Member UUIDs=[], Unicast Mode=-, Data-in-Transit "
       "Encryption=-, Configuration Generation=-, Configuration Time=-"},
      {"$two",
       "Client Mode=false, Korel Max=false, Sub-Cluster Count=2, Inactive Sub-Cluster "
       "UUIDs=[], Restored By=-"},
      {"$host",
       "GetClusterInfo true | GetFormattedSystemDateTime | GetFaultDomainName | "
       "IsClientModeEnabled | IsKorelMaxEnabled | GetInactiveClusterUuids"},
      {"$of a", asked("$A")},
      {"$of b", asked("$B")}};
  Check({{"in two", InTwo},
         {"member", member},
         {"rebooted", rebooted},
         {"in one", clientMember},
         {"max", max}},
        names, R"(
[in two, witness, member] cluster get -> ClusterInformation{Enabled=true, $own, $node, $state,
  Sub-Cluster UUID=$A, $members, $two} <- GetJoinedClusterUuids | $host | $of a
[in two, witness, member] cluster list -> [ClusterInformationList{Enabled=true, $own, $node, $state,
  Sub-Cluster UUID=$A, $members, $two}, ClusterInformationList{Enabled=true, $own, $node, $state,
  Sub-Cluster UUID=$B, $members, $two}] <- GetJoinedClusterUuids | $host | $of a | $host | $of b
cluster get -> ClusterInformation{Enabled=false, $own, $no cluster, Client Mode=false,
  Korel Max=false, Sub-Cluster Count=0, Inactive Sub-Cluster UUIDs=[], Restored By=-}
  <- GetJoinedClusterUuids | $host
[rebooted, max] cluster get -> ClusterInformation{Enabled=false, $own, $no cluster,
  Client Mode=false, Korel Max=true, Sub-Cluster Count=0, Inactive Sub-Cluster UUIDs=[$A, $B],
  Restored By=korel cluster restore} <- GetJoinedClusterUuids | $host
[client, in one, witness, member] cluster get -> ClusterInformation{Enabled=false, $own, $node,
  $state, Sub-Cluster UUID=$A, $members, Client Mode=true, Korel Max=false, Sub-Cluster Count=1,
  Inactive Sub-Cluster UUIDs=[], Restored By=-} <- GetJoinedClusterUuids | $host | $of a
cluster list -> [] <- GetJoinedClusterUuids
)");
}

}  // namespace
}  // namespace test
