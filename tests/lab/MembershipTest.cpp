#include "lab/model/ClusterFacts.h"
#include "lab/model/Clusters.h"
#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using Tovrin::Korel::KorelNodeType;
using MembershipTest = ClustersTest;

struct Part {
  bool isEnabled = false;
  bool isClient = false;
  KorelNodeType nodeType = KorelNodeType::Normal;
  std::string clusterUuid = kZeros;
  std::string role = "";

  bool operator==(const Part&) const = default;
};

Tovrin::Korel::KorelClusterInfoDetailed Directory(const std::string& uuid) {
  Tovrin::Korel::KorelClusterInfoDetailed info;
  KorelUtil::GetInfoFromHXDS(uuid, info);
  return info;
}

/// What the host says of its own membership.
Part PartOf(const std::string& host) {
  const auto control = At(host);
  const std::string cluster = control->GetClusterUuid();
  return {control->GetClusterInfo(true)->enabled, control->IsClientModeEnabled(),
          KorelUtil::GetNodeType(), cluster, cluster == kZeros ? "" : Directory(cluster).nodeRole};
}

std::int64_t Generation() { return Directory(kClusterA).configGeneration.number; }

TEST_F(MembershipTest, EachMemberSaysWhatItIs) {
  EXPECT_EQ(PartOf("host5"), Part{});
  Join(kClusterB);
  OnHost("host5", lab::SetNodeType, KorelNodeType::Metadata);
  StandOn("host6");
  JoinWitness(kClusterB, "any while the data lies in one fault domain");
  EXPECT_THAT(HostControl()->GetJoinedClusterUuids(), ElementsAre(kClusterA, kClusterB));
  const std::pair<const char*, Part> cases[] = {
      {"host1", {true, false, KorelNodeType::Normal, kClusterA, "MASTER"}},
      {"host2", {true, false, KorelNodeType::Normal, kClusterA, "BACKUP"}},
      {"host4", {false, true, KorelNodeType::Normal, kClusterC, "AGENT"}},
      {"host5", {true, false, KorelNodeType::Metadata, kClusterB, "AGENT"}},
      {"host6", {true, false, KorelNodeType::Witness, kClusterA, "WITNESS"}}};
  for (const auto& [host, part] : cases) EXPECT_EQ(PartOf(host), part) << host;
  StandOn("host6");
  Leave(kClusterA);
  EXPECT_EQ(PartOf("host6").clusterUuid, kClusterB);
}

TEST_F(MembershipTest, RolesFollowTheOrderOfJoining) {
  StandOn("host5");
  Join(kClusterA);
  EXPECT_EQ(PartOf("host5").role, "AGENT");
  StandOn("host1");
  const auto info = Directory(kClusterA);
  EXPECT_EQ(info.clusterUuid, kClusterA);
  EXPECT_EQ(info.nodeHealth, "HEALTHY");
  EXPECT_EQ(info.memberUuids.size(), 4U);
  EXPECT_THAT(info.configGeneration.time, MatchesRegex("....-..-..T..:..:..[+-]..:.."));
  Leave(kClusterA);
  EXPECT_EQ(PartOf("host2").role, "MASTER");
  EXPECT_EQ(PartOf("host5").role, "BACKUP");
  Reboot("host2");
  EXPECT_EQ(PartOf("host5").role, "MASTER") << "until host2 is restored";
}

TEST_F(MembershipTest, WhatIsNotPersistedEndsWithARebootOrARestore) {
  for (const auto& act : {+[] { Reboot("host5"); }, Restore}) {
    StandOn("host5");
    HostControl()->CreateCluster(kDatastore1, false, false);
    act();
    EXPECT_EQ(PartOf("host5"), Part{});
  }
}

TEST_F(MembershipTest, Refusals) {
  const std::string inA = "the host is in cluster " + kClusterA;
  const std::string leaveFirst = inA + "; it must leave that one first";
  const std::string notInB = "the host is not in cluster " + kClusterB;
  const std::string onlyWitness = " and can join others only as a witness";
  ExpectRefusedAt("host1", {{[] { Create(kDatastore1); }, leaveFirst},
                            {[] { Join(kClusterA); }, inA + " already"},
                            {[] { Directory(kClusterB); }, notInB},
                            {[] { HostControl()->RestoreCluster(true, true); },
                             "a restore is for one stage of a boot at most"}});
  ExpectRefusedAt("host9", {{[] { HostControl(); },
                             "KOREL_LAB_HOST names no host of the lab: 'host9'; the hosts are "
                             "host1, host2, host3, host4, host5, host6"}});
  const auto setType = [](const char* host) {
    return [=] { OnHost(host, lab::SetNodeType, KorelNodeType::Normal); };
  };
  ExpectRefusedAt(
      "host5",
      {{[] { Create("CCCCCCCC-0000-4000-8000-000000000003"); },
        "cluster UUID " + kClusterC + " is taken"},
       {[] { JoinClient(kZeros); }, "the UUID of all zeros stands for none and cannot be used"},
       {[] { Join(kClusterC); },
        "cluster " + kClusterC + " is a client cluster; join it in client mode"},
       {[] { JoinClient(kClusterA); }, "cluster " + kClusterA + " is not a client cluster"},
       {[] { Join(kClusterA, KorelNodeType::Metadata, "host1"); },
        "only a witness names a preferred fault domain"},
       {setType("host5"), "host 'host5' is in no cluster; its node type is chosen when it joins"}});
  ExpectRefusedAt("host6", {{[] { Join(kClusterB); },
                             "the host is a witness of cluster " + kClusterA + onlyWitness},
                            {[] { Leave(kClusterB); }, notInB}});
  JoinWitness(kClusterB, "any");
  Reboot("host3");
  const std::string persisted = "the host's persisted configuration has it in cluster " +
                                kClusterB + "; it must be restored and leave that one first";
  ExpectRefusedAt("host3", {{[] { Create(kDatastore1); }, persisted},
                            {[] { HostControl()->SetKorelMaxEnabled(true); },
                             "Korel is not enabled on this host: it is in no Korel cluster"},
                            {setType("host6"),
                             "host 'host6' is in several clusters, which only a witness can be"}});
}

TEST_F(MembershipTest, ClusterGoesWithItsLastMemberAndTakesItsDatastoresAlong) {
  At("host3")->AddDatastore({kDatastore1, "ds1", "", false});
  At("host4")->AddDatastore({kDatastore1, "far", kClusterB, false});
  StandOn("host3");
  Leave(kClusterB);
  EXPECT_EQ(Failure([] { Join(kClusterB); }), "there is no cluster " + kClusterB);
  EXPECT_THAT(At("host4")->GetDatastores(), IsEmpty());
}

TEST_F(MembershipTest, EachChangeOfTheClusterCountsOnce) {
  const auto host = HostControl();
  const auto rename = [&] { host->SetDatastoreName(kDatastore1, "ds2"); };
  const std::pair<std::function<void()>, int> actsAndChanges[] = {
      {[&] { host->AddDatastore(Tovrin::Korel::KorelDatastore(kDatastore1, "ds1", "", false)); },
       1},
      {rename, 1},
      {rename, 0},
      {[&] { host->ClearDatastores(); }, 1},
      {[] { Reboot("host1"), Restore(); }, 2},
      {[&] { EXPECT_NE(Failure([&] { host->RemoveDatastore(kDatastore1); }), ""); }, 0},
  };
  for (const auto& [act, changes] : actsAndChanges) {
    const std::int64_t before = Generation();
    act();
    EXPECT_EQ(Generation(), before + changes) << "after generation " << before;
  }
}

}  // namespace
}  // namespace lab_test
