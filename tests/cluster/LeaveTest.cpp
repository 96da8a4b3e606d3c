#include "korel/cluster/Commands.h"
#include "tests/support/RecordingHost.h"

namespace test {
namespace {

const std::string kA = "aaaaaaaa-0000-0000-0000-000000000001";
const std::string kB = "bbbbbbbb-0000-0000-0000-000000000002";
const std::string kNotifier = "/usr/lib/ostrel/hostd/bin/notifyDatastore -t ";

void InTwo(RecordingHost& host) {
  host.enabled = true;
  host.joinedClusters = {kA, kB};
  host.datastores = {{"1", "ds1", kA, true}, {"2", "ds2", kB, false}};
}

TEST(ClusterLeave, NotifiesAndLeaves) {
  const std::string info = "GetClusterInfo true";
  const std::string before = "[" + kNotifier + "PreUnmount -d ds1,ds2]";
  const std::string failed = "[" + kNotifier + "FailedUnmount -d ds1,ds2]";
  const auto client = [](RecordingHost& host) { host.clientMode = true; };
  Check({
      {"cluster leave", nullptr, "error: The host is not in a Korel or client cluster. | none",
       info + " | IsClientModeEnabled"},
      // The list of names is empty, the blank before it stays.
      {"cluster leave", client, "true",
       info + " | IsClientModeEnabled | GetDatastores | [" + kNotifier +
           "PreUnmount -d ] | GetJoinedClusterUuids"},
      {"cluster leave", InTwo, "true",
       info + " | GetDatastores | " + before + " | GetJoinedClusterUuids | LeaveCluster " + kA +
           " false | LeaveCluster " + kB + " false"},
      {"cluster leave -u ''", InTwo, "true",
       info + " | GetDatastores | " + before + " | GetJoinedClusterUuids | LeaveCluster " + kA +
           " false | LeaveCluster " + kB + " false"},
      {"cluster leave -u " + kB, InTwo, "true",
       info + " | GetDatastores | " + before + " | LeaveCluster " + kB + " false"},
      {"cluster leave", Failing("GetDatastores", InTwo), "error: no luck | none",
       info + " | GetDatastores"},
      {"cluster leave", Failing("GetJoinedClusterUuids", InTwo), "error: no luck | none",
       info + " | GetDatastores | " + before + " | GetJoinedClusterUuids | " + failed},
      {"cluster leave", Failing("LeaveCluster", InTwo), "error: no luck | none",
       info + " | GetDatastores | " + before + " | GetJoinedClusterUuids | LeaveCluster " + kA +
           " false | " + failed},
  });
}

TEST(ClusterRestore, PassesNoBootStage) {
  Check({
      {"cluster restore", nullptr, "true", "RestoreCluster false false"},
      {"cluster restore", Failing("RestoreCluster"), "error: no luck | none",
       "RestoreCluster false false"},
      {"cluster restore --boot", nullptr, "usage: unknown option \"--boot\"", ""},
  });
}

TEST(ClusterRestore, OffersTheBootStagesWhenBuiltWithThem) {
  const auto run = [](bool boot, bool postboot) {
    RecordingHost host;
    const auto command = OstrelCli::KorelNamespace::ClusterRestore::New(true);
    EXPECT_EQ(command->GetInputSpec()->GetParameters().size(), 2U);
    const auto input = Corvex::CallSpec::Input::New();
    if (boot) input->SetParameter("boot", true);
    if (postboot) input->SetParameter("postboot", true);
    const auto output = Corvex::CallSpec::Output::New();
    command->GetDispatcher()->Execute(input, output);
    for (const auto& message : output->GetErrorMessages()) host.calls.push_back(message);
    return host.calls;
  };
  using Calls = std::vector<std::string>;
  EXPECT_EQ(run(true, false), Calls{"RestoreCluster true false"});
  EXPECT_EQ(run(false, true), Calls{"RestoreCluster false true"});
  EXPECT_EQ(run(true, true), Calls{"Flags boot and postboot are mutually exclusive"});
}

TEST(KorelMax, IsOnlyForHostsWithoutDisks) {
  const auto enabled = [](RecordingHost& host) { host.enabled = true; };
  const auto withDisks = [](RecordingHost& host) {
    host.enabled = true;
    host.disks = {{"x", kA}};
  };
  const std::string asked = "GetClusterInfo true | GetKorelDisks 1";
  Check({
      {"cluster korelmax set -e true", nullptr,
       "error: To enable/disable Korel Max, the host needs to be in a Korel cluster and enabled "
       "with "
       "Korel. | none",
       "GetClusterInfo true"},
      {"cluster korelmax set -e true", enabled, "true", asked + " | SetKorelMaxEnabled true"},
      {"cluster korelmax set -e true", withDisks,
       "error: The host has diskgroups on it. Korel Max cannot be configured. | none", asked},
      {"cluster korelmax set -e false", withDisks, "true", asked + " | SetKorelMaxEnabled false"},
      {"cluster korelmax set -e false", Failing("SetKorelMaxEnabled", enabled),
       "error: Failed to enable Korel Max on the cluster: no luck | none",
       asked + " | SetKorelMaxEnabled false"},
  });
}

TEST(ClusterInformation, IsShownOfOneAndOfAll) {
  const auto prepare = [](RecordingHost& host) {
    InTwo(host);
    host.clusterUuid = kA;
    host.nodeType = Tovrin::Korel::KorelNodeType::Witness;
    host.cluster = {"", "WITNESS", "HEALTHY", {"m1", "m2"}, {7, "then"}};
  };
  const auto of = [](const std::string& type, const std::string& uuid) {
    return type +
           "{Enabled=true, Current Local Time=now, Node UUID=node, Node Type=WITNESS, Node "
           "Role=WITNESS, Node Health=HEALTHY, Fault Domain=fd1, Maintenance Mode=OFF, Sub-Cluster "
           "UUID=" +
           uuid +
           ", Member Count=2, Member UUIDs=[m1, m2], Unicast Mode=true, Data-in-Transit "
           "Encryption=false, Configuration Generation=7, Configuration Time=then}";
  };
  {
    RecordingHost host;
    prepare(host);
    EXPECT_EQ(RunLine("korel cluster get"), of("ClusterInformation", kA));
    EXPECT_EQ(RunLine("korel cluster list"), "[" + of("ClusterInformationList", kA) + ", " +
                                                 of("ClusterInformationList", kB) + "]");
  }
  RecordingHost alone;
  const std::string outcome = RunLine("korel cluster get");
  EXPECT_TRUE(outcome.starts_with(
      "ClusterInformation{Enabled=false, Current Local Time=now, Node UUID=-, "))
      << outcome;
  EXPECT_EQ(RunLine("korel cluster list"), "[]");
  alone.failures["GetClusterInfo"] = "no luck";
  EXPECT_EQ(RunLine("korel cluster get"),
            "error: Unable to get cluster information: no luck | none");
  EXPECT_EQ(RunLine("korel cluster list"),
            "error: Unable to list cluster information: no luck | none");
}

}  // namespace
}  // namespace test
