#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::ElementsAre;
using testing::IsEmpty;
using Tovrin::Korel::KorelNodeType;

struct Part {
  bool isEnabled;
  bool isClient;
  KorelNodeType nodeType;
  std::string clusterUuid;

  bool operator==(const Part&) const = default;
};

/// What the host says of its own membership.
Part Membership() {
  const auto host = HostControl();
  return {host->GetClusterInfo(true)->enabled, host->IsClientModeEnabled(),
          KorelUtil::GetNodeType(), host->GetClusterUuid()};
}

class ClusterTest : public LabTest {
 protected:
  /// host1 and host2 are in cluster A, host3 in B, host4 in client cluster C; host5 and host6 in
  /// none.
  void MakeClusters() {
    AddHostsUpTo(6);
    StandOn("host1");
    Create(kClusterA);
    StandOn("host2");
    Join(kClusterA);
    StandOn("host3");
    Create(kClusterB);
    StandOn("host4");
    JoinClient(kClusterC);
  }
};

TEST_F(ClusterTest, EachKindOfMemberSaysWhatItIs) {
  MakeClusters();
  StandOn("host5");
  EXPECT_EQ(Membership(), (Part{false, false, KorelNodeType::Normal, kZeros}));
  Join(kClusterB, KorelNodeType::Metadata);
  StandOn("host6");
  JoinWitness(kClusterA, "host1");
  JoinWitness(kClusterB, "any while the data lies in one fault domain");
  EXPECT_THAT(HostControl()->GetJoinedClusterUuids(), ElementsAre(kClusterA, kClusterB));
  const struct {
    const char* host;
    Part part;
  } cases[] = {{"host1", {true, false, KorelNodeType::Normal, kClusterA}},
               {"host2", {true, false, KorelNodeType::Normal, kClusterA}},
               {"host4", {false, true, KorelNodeType::Normal, kClusterC}},
               {"host5", {true, false, KorelNodeType::Metadata, kClusterB}},
               {"host6", {true, false, KorelNodeType::Witness, kClusterA}}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.host);
    StandOn(each.host);
    EXPECT_EQ(Membership(), each.part);
  }
}

TEST_F(ClusterTest, UuidsAreTheSameInEitherCase) {
  AddHostsUpTo(2);
  Create("AAAAAAAA-0000-4000-8000-000000000001");
  EXPECT_EQ(HostControl()->GetClusterUuid(), kClusterA);
  StandOn("host2");
  ExpectRefused([] { Create("AAAAAAAA-0000-4000-8000-000000000001"); },
                "cluster UUID " + kClusterA + " is taken");
}

TEST_F(ClusterTest, Refusals) {
  MakeClusters();
  StandOn("host6");
  JoinWitness(kClusterA, "host2");
  const std::string inA = "the host is in cluster " + kClusterA + "; it must leave that one first";
  ExpectRefusals({
      {__LINE__, "host1", [] { Create(kDatastore1); }, inA},
      {__LINE__, "host1", [] { Join(kClusterB); }, inA},
      {__LINE__, "host1", [] { JoinWitness(kClusterB, "host3"); }, inA},
      {__LINE__, "host1", [] { JoinClient(kClusterC); }, inA},
      {__LINE__, "host1", [] { Join(kClusterA); },
       "the host is in cluster " + kClusterA + " already"},
      {__LINE__, "host4", [] { Join(kClusterA); },
       "the host is in cluster " + kClusterC + "; it must leave that one first"},
      {__LINE__, "host5", [] { Create(kClusterA); }, "cluster UUID " + kClusterA + " is taken"},
      {__LINE__, "host5", [] { Create(kClusterC); }, "cluster UUID " + kClusterC + " is taken"},
      {__LINE__, "host5", [] { Create("x"); }, NotUuid("x")},
      {__LINE__, "host5", [] { Create(kZeros); },
       "the UUID of all zeros stands for none and cannot be used"},
      {__LINE__, "host5", [] { Join(kDatastore1); }, "there is no cluster " + kDatastore1},
      {__LINE__, "host5", [] { Join(kClusterC); },
       "cluster " + kClusterC + " is a client cluster; join it in client mode"},
      {__LINE__, "host5", [] { JoinClient(kClusterA); },
       "cluster " + kClusterA + " is not a client cluster"},
      {__LINE__, "host5", [] { JoinClient(kZeros); },
       "the UUID of all zeros stands for none and cannot be used"},
      {__LINE__, "host5", [] { JoinWitness(kClusterA, ""); },
       "a witness must name its preferred fault domain"},
      {__LINE__, "host5", [] { JoinWitness(kClusterA, "host3"); },
       "'host3' is no fault domain of the cluster's data hosts; theirs are 'host1' and 'host2'"},
      {__LINE__, "host5", [] { JoinWitness(kClusterA, std::string(257, 'x')); },
       "a fault domain name has 1 to 256 characters, got 257"},
      {__LINE__, "host5", [] { Join(kClusterA, KorelNodeType::Metadata, "host1"); },
       "only a witness names a preferred fault domain"},
      {__LINE__, "host5", [] { Join(kClusterA, static_cast<KorelNodeType>(7)); },
       "there is no node type 7"},
      {__LINE__, "host5", [] { Leave(kClusterA); }, "the host is not in cluster " + kClusterA},
      {__LINE__, "host6", [] { Join(kClusterB); },
       "the host is a witness of cluster " + kClusterA + " and can join others only as a witness"},
      {__LINE__, "host6", [] { JoinWitness(kClusterA, "host1"); },
       "the host is in cluster " + kClusterA + " already"},
      {__LINE__, "host6", [] { Create(kDatastore1); }, inA},
      {__LINE__, "host6", [] { Leave(kClusterB); }, "the host is not in cluster " + kClusterB},
  });
}

TEST_F(ClusterTest, ClusterGoesWithItsLastMemberAndTakesItsDatastoresAlong) {
  MakeClusters();
  StandOn("host3");
  HostControl()->AddDatastore({kDatastore1, "ds1", "", false});
  for (const char* host : {"host1", "host4"}) {
    StandOn(host);
    HostControl()->AddDatastore({kDatastore1, "far", kClusterB, false});
  }
  StandOn("host1");
  Leave(kClusterA);
  StandOn("host2");
  EXPECT_EQ(HostControl()->GetDatastores().size(), 2U) << "host2 is still in cluster A";
  StandOn("host3");
  Leave(kClusterB);
  EXPECT_THAT(HostControl()->GetDatastores(), IsEmpty());
  StandOn("host2");
  EXPECT_EQ(HostControl()->GetDatastores().size(), 1U) << "the mount is gone";
  StandOn("host4");
  EXPECT_THAT(HostControl()->GetDatastores(), IsEmpty());
  StandOn("host3");
  EXPECT_EQ(Failure([] { Join(kClusterB); }), "there is no cluster " + kClusterB);
}

TEST_F(ClusterTest, WitnessLeavesOneClusterAndStaysInTheOther) {
  MakeClusters();
  StandOn("host5");
  JoinWitness(kClusterB, "host3");
  JoinWitness(kClusterA, "host1");
  Leave(kClusterB);
  EXPECT_EQ(Membership(), (Part{true, false, KorelNodeType::Witness, kClusterA}));
  Leave(kClusterA);
  EXPECT_EQ(Membership(), (Part{false, false, KorelNodeType::Normal, kZeros}));
}

TEST_F(ClusterTest, FaultDomainIsTheHostsOwnUntilItIsNamed) {
  AddHostsUpTo(2);
  StandOn("host2");
  EXPECT_EQ(HostControl()->GetFaultDomainName(), "host2");
  const std::string own = KorelUtil::GetFaultDomainId();
  HostControl()->SetFaultDomainName("Rack 4 \xc3\xa9");
  EXPECT_EQ(HostControl()->GetFaultDomainName(), "Rack 4 \xc3\xa9");
  const std::string shared = KorelUtil::GetFaultDomainId();
  EXPECT_NE(shared, own);
  StandOn("host1");
  HostControl()->SetFaultDomainName("Rack 4 \xc3\xa9");
  EXPECT_EQ(KorelUtil::GetFaultDomainId(), shared) << "the same name is the same domain";
  StandOn("host2");
  HostControl()->ResetFaultDomain();
  EXPECT_EQ(HostControl()->GetFaultDomainName(), "host2");
  EXPECT_EQ(KorelUtil::GetFaultDomainId(), own);
}

}  // namespace
}  // namespace lab_test
