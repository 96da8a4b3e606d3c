#include "lab/model/Clusters.h"
#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelNodeType;

bool IsStretched(const char* host) {
  StandOn(host);
  return KorelUtil::IsInStretchedCluster();
}

void MoveTo(const char* host, const char* faultDomain) {
  StandOn(host);
  HostControl()->SetFaultDomainName(faultDomain);
}

void Prefer(const std::string& name, const std::string& cluster) {
  HostControl()->SetPreferredFaultDomain(name, cluster);
}

std::pair<std::string, std::string> Preferred(const std::string& cluster) {
  std::pair<std::string, std::string> preferred{"x", "x"};
  KorelUtil::GetPreferredFaultDomainInfo(cluster, preferred.first, preferred.second);
  return preferred;
}

class StretchedTest : public LabTest {
 protected:
  /// host1 in fault domain "east" and host2 in "west" are in cluster A, host3 is its witness; host4
  /// is alone in cluster B.
  StretchedTest() {
    AddHostsUpTo(4);
    MoveTo("host1", "east");
    Create(kClusterA);
    MoveTo("host2", "west");
    Join(kClusterA);
    StandOn("host4");
    Create(kClusterB);
    StandOn("host3");
    JoinWitness(kClusterA, "east");
  }
};

TEST_F(StretchedTest, WhileThereIsAWitnessAndDataInTwoFaultDomains) {
  for (const char* host : {"host1", "host2", "host3"}) EXPECT_TRUE(IsStretched(host)) << host;
  EXPECT_FALSE(IsStretched("host4"));
  const struct {
    const char* what;
    std::function<void()> act;
    bool isStretched;
  } acts[] = {
      {"both in one", [] { MoveTo("host2", "east"); }, false},
      {"apart again", [] { MoveTo("host2", "west"); }, true},
      {"a witness's own does not count", [] { MoveTo("host3", "north"); }, true},
      {"a rebooted one counts", [] { Reboot("host2"); }, true},
      {"as a restored one does",
       [] {
         StandOn("host2");
         HostControl()->RestoreCluster(false, false);
       },
       true},
      {"witness leaves",
       [] {
         StandOn("host3");
         Leave(kClusterA);
       },
       false},
      {"a data host becomes the witness",
       [] { OnHost("host2", lab::SetNodeType, KorelNodeType::Witness); }, false},
      {"so does the last one", [] { OnHost("host1", lab::SetNodeType, KorelNodeType::Witness); },
       true},
  };
  for (const auto& each : acts) {
    SCOPED_TRACE(each.what);
    each.act();
    EXPECT_EQ(IsStretched("host1"), each.isStretched);
  }
}

TEST_F(StretchedTest, ThreeFaultDomainsAreNotTwo) {
  StandOn("host4");
  Leave(kClusterB);
  Join(kClusterA);
  EXPECT_FALSE(IsStretched("host1"));
  MoveTo("host4", "west");
  EXPECT_TRUE(IsStretched("host1"));
}

TEST_F(StretchedTest, WithoutKnownDataHostsTheWitnessIsEnough) {
  for (const char* host : {"host1", "host2"}) {
    StandOn(host);
    Leave(kClusterA);
  }
  EXPECT_TRUE(IsStretched("host3"));
  Prefer("nowhere yet", kClusterA);
  EXPECT_EQ(Preferred(kClusterA).first, "nowhere yet");
}

TEST_F(StretchedTest, PreferredFaultDomainIsTheClusters) {
  StandOn("host1");
  const auto east = Preferred(kClusterA);
  EXPECT_EQ(east, std::make_pair(std::string("east"), KorelUtil::GetFaultDomainId()));
  StandOn("host3");
  Prefer("west", kClusterA);
  JoinWitness(kClusterB, "host4");
  StandOn("host2");
  EXPECT_EQ(Preferred(kClusterA),
            std::make_pair(std::string("west"), KorelUtil::GetFaultDomainId()));
  StandOn("host3");
  EXPECT_EQ(Preferred(kClusterB).first, "host4") << "each cluster has its own";
  Leave(kClusterA);
  StandOn("host2");
  EXPECT_EQ(Preferred(kClusterA), std::make_pair(std::string(), std::string()));
}

TEST_F(StretchedTest, Refusals) {
  ExpectRefusals({
      {__LINE__, "host1", [] { Prefer("west", kClusterA); },
       "the preferred fault domain of cluster " + kClusterA + " is set on its witness"},
      {__LINE__, "host3", [] { Prefer("north", kClusterA); },
       "'north' is no fault domain of the cluster's data hosts; theirs are 'east' and 'west'"},
      {__LINE__, "host3", [] { Prefer("", kClusterA); },
       "a witness must name its preferred fault domain"},
      {__LINE__, "host3", [] { Prefer("east", kClusterB); },
       "the host is not in cluster " + kClusterB},
      {__LINE__, "host3", [] { Prefer("east", "here"); }, NotUuid("here")},
      {__LINE__, "host4", [] { Preferred(kClusterA); }, "the host is not in cluster " + kClusterA},
  });
}

}  // namespace
}  // namespace lab_test
