#include "lab/model/Clusters.h"
#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelNodeType;
using Preference = std::pair<std::string, std::string>;

bool IsStretched(const char* host) {
  StandOn(host);
  return KorelUtil::IsInStretchedCluster();
}

void MoveTo(const char* host, const char* faultDomain) {
  At(host)->SetFaultDomainName(faultDomain);
}

void Prefer(const std::string& name, const std::string& cluster) {
  HostControl()->SetPreferredFaultDomain(name, cluster);
}

Preference Preferred(const std::string& cluster) {
  Preference preferred{"x", "x"};
  KorelUtil::GetPreferredFaultDomainInfo(cluster, preferred.first, preferred.second);
  return preferred;
}

/// Cluster A's data lies in "east", host1, and "west", host2; its witness prefers "east".
class StretchedTest : public ClustersTest {
 protected:
  StretchedTest() {
    MoveTo("host1", "east");
    MoveTo("host2", "west");
    StandOn("host6");
    Prefer("east", kClusterA);
  }
};

TEST_F(StretchedTest, WhileThereIsAWitnessAndDataInTwoFaultDomains) {
  for (const char* host : {"host1", "host2", "host6"}) EXPECT_TRUE(IsStretched(host)) << host;
  EXPECT_FALSE(IsStretched("host3"));
  const auto leaveA = [] { Leave(kClusterA); };
  const auto makeWitness = [](const char* host) {
    return [=] { OnHost(host, lab::SetNodeType, KorelNodeType::Witness); };
  };
  const std::tuple<const char*, const char*, std::function<void()>, bool> acts[] = {
      {"both in one", "host2", [] { MoveTo("host2", "east"); }, false},
      {"apart again", "host2", [] { MoveTo("host2", "west"); }, true},
      {"three are not two", "host5", [] { Join(kClusterA); }, false},
      {"the third in one of them", "host5", [] { MoveTo("host5", "west"); }, true},
      {"a witness's own does not count", "host6", [] { MoveTo("host6", "north"); }, true},
      {"without the third", "host5", leaveA, true},
      {"a rebooted one counts", "host2", [] { Reboot("host2"); }, true},
      {"as a restored one does", "host2", Restore, true},
      {"witness leaves", "host6", leaveA, false},
      {"a data host becomes the witness", "host2", makeWitness("host2"), false},
      {"so does the last one", "host1", makeWitness("host1"), true},
  };
  for (const auto& [what, host, act, isStretched] : acts) {
    StandOn(host);
    act();
    EXPECT_EQ(IsStretched("host1"), isStretched) << what;
  }
  Prefer("nowhere yet", kClusterA);
  EXPECT_EQ(Preferred(kClusterA).first, "nowhere yet") << "no data host is known";
}

TEST_F(StretchedTest, PreferredFaultDomainIsTheClusters) {
  StandOn("host1");
  EXPECT_EQ(Preferred(kClusterA), Preference("east", KorelUtil::GetFaultDomainId()));
  StandOn("host6");
  Prefer("west", kClusterA);
  JoinWitness(kClusterB, "host3");
  StandOn("host2");
  EXPECT_EQ(Preferred(kClusterA), Preference("west", KorelUtil::GetFaultDomainId()));
  StandOn("host6");
  EXPECT_EQ(Preferred(kClusterB).first, "host3") << "each cluster has its own";
  Leave(kClusterA);
  StandOn("host2");
  EXPECT_EQ(Preferred(kClusterA), Preference());
}

TEST_F(StretchedTest, Refusals) {
  ExpectRefused([] { Prefer("", kClusterA); }, "a witness must name its preferred fault domain");
  ExpectRefused([] { Prefer("north", kClusterA); },
                "'north' is no fault domain of the cluster's data hosts; theirs are 'east' and "
                "'west'");
  ExpectRefused([] { Prefer("east", kClusterB); }, "the host is not in cluster " + kClusterB);
  StandOn("host1");
  ExpectRefused([] { Prefer("west", kClusterA); },
                "the preferred fault domain of cluster " + kClusterA + " is set on its witness");
  ExpectRefused([] { Preferred(kClusterB); }, "the host is not in cluster " + kClusterB);
}

TEST_F(StretchedTest, FaultDomainIsTheHostsOwnUntilItIsNamed) {
  const auto host = At("host5");
  EXPECT_EQ(host->GetFaultDomainName(), "host5");
  const std::string own = KorelUtil::GetFaultDomainId();
  host->SetFaultDomainName("Rack 4 \xc3\xa9");
  const std::string shared = KorelUtil::GetFaultDomainId();
  EXPECT_NE(shared, own);
  MoveTo("host4", "Rack 4 \xc3\xa9");
  EXPECT_EQ(KorelUtil::GetFaultDomainId(), shared) << "the same name is the same domain";
  At("host5")->ResetFaultDomain();
  EXPECT_EQ(KorelUtil::GetFaultDomainId(), own);
}

}  // namespace
}  // namespace lab_test
