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

class MembershipTest : public LabTest {
 protected:
  /// host1 to host3 keep data in cluster A, host4 is its metadata node, host5 the witness of A and
  /// B, host6 alone in B.
  MembershipTest() {
    AddHostsUpTo(7);
    StandOn("host1");
    Create(kClusterA);
    for (const char* host : {"host2", "host3"}) {
      StandOn(host);
      Join(kClusterA);
    }
    StandOn("host4");
    Join(kClusterA, KorelNodeType::Metadata);
    StandOn("host6");
    Create(kClusterB);
    StandOn("host5");
    JoinWitness(kClusterA, "any");
    JoinWitness(kClusterB, "any");
  }

  static std::string Role(const std::string& host) {
    StandOn(host);
    return Directory(kClusterA).nodeRole;
  }
};

TEST_F(MembershipTest, MembersShareOneDirectory) {
  const std::pair<const char*, const char*> roles[] = {{"host1", "MASTER"},
                                                       {"host2", "BACKUP"},
                                                       {"host3", "AGENT"},
                                                       {"host4", "AGENT"},
                                                       {"host5", "WITNESS"}};
  for (const auto& [host, role] : roles) {
    SCOPED_TRACE(host);
    EXPECT_EQ(Role(host), role);
    const auto info = Directory(kClusterA);
    EXPECT_EQ(info.clusterUuid, kClusterA);
    EXPECT_EQ(info.nodeHealth, "HEALTHY");
    EXPECT_THAT(info.memberUuids,
                ElementsAre(NodeUuidOf("host1"), NodeUuidOf("host2"), NodeUuidOf("host3"),
                            NodeUuidOf("host4"), NodeUuidOf("host5")));
    EXPECT_THAT(info.configGeneration.time, MatchesRegex("....-..-..T..:..:..[+-]..:.."));
  }
  StandOn("host1");
  Leave(kClusterA);
  EXPECT_EQ(Role("host2"), "MASTER");
  EXPECT_EQ(Role("host3"), "BACKUP");
  StandOn("host7");
  JoinClient(kClusterC);
  EXPECT_EQ(Directory(kClusterC).nodeRole, "AGENT");
  Leave(HostControl()->GetJoinedClusterUuids().at(0));
  EXPECT_FALSE(HostControl()->IsClientModeEnabled());
}

TEST_F(MembershipTest, RebootDropsTheActiveSideAndRestoreBringsItBack) {
  for (const char* host : {"host1", "host5"}) {
    SCOPED_TRACE(host);
    StandOn(host);
    const auto joined = HostControl()->GetJoinedClusterUuids();
    const KorelNodeType nodeType = KorelUtil::GetNodeType();
    Reboot(host);
    EXPECT_FALSE(HostControl()->GetClusterInfo(true)->enabled);
    EXPECT_EQ(HostControl()->GetClusterUuid(), kZeros);
    EXPECT_THAT(HostControl()->GetJoinedClusterUuids(), IsEmpty());
    EXPECT_THAT(HostControl()->GetDatastores(), IsEmpty());
    HostControl()->RestoreCluster(false, false);
    EXPECT_EQ(HostControl()->GetJoinedClusterUuids(), joined);
    EXPECT_EQ(KorelUtil::GetNodeType(), nodeType);
  }
  EXPECT_EQ(Role("host1"), "MASTER") << "members keep their order";
}

TEST_F(MembershipTest, RebootedHostTakesNoPartButStaysAMember) {
  Reboot("host1");
  EXPECT_EQ(Role("host2"), "MASTER");
  EXPECT_EQ(Directory(kClusterA).memberUuids.size(), 4U);
  Reboot("host6");
  StandOn("host7");
  Join(kClusterB);
  Leave(kClusterB);
  StandOn("host6");
  HostControl()->RestoreCluster(true, false);
  HostControl()->RestoreCluster(false, true);
  EXPECT_EQ(HostControl()->GetClusterUuid(), kClusterB) << "the cluster outlived the reboot";
  EXPECT_EQ(HostControl()->GetDatastores().size(), 1U);
}

TEST_F(MembershipTest, RestoreChangesNothingWhereNothingIsDown) {
  for (const char* host : {"host1", "host5", "host7"}) {
    StandOn(host);
    const std::string before = State();
    HostControl()->RestoreCluster(false, false);
    EXPECT_EQ(State(), before) << host;
  }
}

TEST_F(MembershipTest, WhatWasLeftOrNeverPersistedIsNotRestored) {
  StandOn("host2");
  Leave(kClusterA);
  Reboot("host2");
  HostControl()->RestoreCluster(false, false);
  EXPECT_FALSE(HostControl()->GetClusterInfo(true)->enabled);
  StandOn("host7");
  HostControl()->CreateCluster(kClusterC, false, false);
  Reboot("host7");
  HostControl()->RestoreCluster(false, false);
  EXPECT_FALSE(HostControl()->GetClusterInfo(true)->enabled);
  EXPECT_EQ(Failure([] { Join(kClusterC); }), "there is no cluster " + kClusterC);
}

TEST_F(MembershipTest, Refusals) {
  Reboot("host6");
  const std::string persisted = "the host's persisted configuration has it in cluster " +
                                kClusterB + "; it must be restored and leave that one first";
  const auto setType = [](const char* host, KorelNodeType nodeType) {
    return [=] { OnHost(host, lab::SetNodeType, nodeType); };
  };
  ExpectRefusals({
      {__LINE__, "host1", [] { HostControl()->RestoreCluster(true, true); },
       "a restore is for one stage of a boot at most"},
      {__LINE__, "host1", [] { Directory(kClusterB); }, "the host is not in cluster " + kClusterB},
      {__LINE__, "host6", [] { Directory(kClusterB); }, "the host is not in cluster " + kClusterB},
      {__LINE__, "host1", [] { Directory(""); }, NotUuid("")},
      {__LINE__, "host6", [] { Create(kClusterC); }, persisted},
      {__LINE__, "host6", [] { JoinWitness(kClusterA, "host1"); }, persisted},
      {__LINE__, "host6", [] { HostControl()->SetKorelMaxEnabled(true); },
       "Korel is not enabled on this host: it is in no Korel cluster"},
      {__LINE__, "host5", setType("host5", KorelNodeType::Normal),
       "host 'host5' is in several clusters, which only a witness can be"},
      {__LINE__, "host7", setType("host7", KorelNodeType::Witness),
       "host 'host7' is in no cluster; its node type is chosen when it joins"},
      {__LINE__, "host7", setType("host9", KorelNodeType::Witness),
       "the lab has no host 'host9'; the hosts are host1, host2, host3, host4, host5, host6, "
       "host7"},
  });
}

TEST_F(MembershipTest, EachChangeOfTheClusterCountsOnce) {
  StandOn("host1");
  const auto host = HostControl();
  const struct {
    const char* what;
    std::function<void()> act;
    int changes;
  } acts[] = {
      {"add datastore",
       [&] {
         host->AddDatastore({kDatastore1, "ds1", "", false});
       },
       1},
      {"rename", [&] { host->SetDatastoreName(kDatastore1, "ds2"); }, 1},
      {"rename to the same", [&] { host->SetDatastoreName(kDatastore1, "ds2"); }, 0},
      {"clear", [&] { host->ClearDatastores(); }, 1},
      {"clear nothing", [&] { host->ClearDatastores(); }, 0},
      {"encrypt", [&] { host->SetDataInTransitEncryption(kClusterA, true, "SETTLED", 0); }, 1},
      {"again", [&] { host->SetDataInTransitEncryption(kClusterA, true, "SETTLED", 0); }, 0},
      {"rekey", [&] { host->SetRekeyInterval(kClusterA, 60); }, 1},
      {"reboot and restore",
       [&] {
         Reboot("host1");
         host->RestoreCluster(false, false);
       },
       2},
      {"refused", [&] { EXPECT_NE(Failure([&] { host->RemoveDatastore(kDatastore1); }), ""); }, 0},
      {"another cluster's",
       [] {
         StandOn("host7");
         Join(kClusterB);
         StandOn("host1");
       },
       0},
  };
  for (const auto& each : acts) {
    SCOPED_TRACE(each.what);
    const std::int64_t before = Generation(kClusterA);
    each.act();
    EXPECT_EQ(Generation(kClusterA), before + each.changes);
  }
}

TEST_F(MembershipTest, MountThatVanishesWithItsClusterIsAChange) {
  StandOn("host7");
  Create(kClusterC);
  HostControl()->AddDatastore({kDatastore1, "ds1", "", false});
  StandOn("host1");
  HostControl()->AddDatastore({kDatastore1, "far", kClusterC, false});
  const std::int64_t before = Generation(kClusterA);
  StandOn("host7");
  Leave(kClusterC);
  StandOn("host1");
  EXPECT_EQ(Generation(kClusterA), before + 1);
}

TEST_F(MembershipTest, KorelMaxNeedsAHostWithoutDiskGroups) {
  StandOn("host1");
  const auto host = HostControl();
  host->SetKorelMaxEnabled(true);
  host->SetKorelMaxEnabled(false);
  host->AddDisks("mpx.dkhba0:C0:T1:L0", {"mpx.dkhba2:C0:T1:L0"});
  ExpectRefused([&] { host->SetKorelMaxEnabled(true); },
                "the host has disk groups; they must be removed before it can be a Korel Max host");
  host->SetKorelMaxEnabled(false);
  StandOn("host2");
  HostControl()->SetKorelMaxEnabled(true);
}

}  // namespace
}  // namespace lab_test
