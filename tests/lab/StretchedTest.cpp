#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
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
  const std::tuple<const char*, const char*, std::function<void()>, bool> acts[] = {
      {"both in one", "host2", [] { MoveTo("host2", "east"); }, false},
      {"apart again", "host2", [] { MoveTo("host2", "west"); }, true},
      {"three are not two", "host5", [] { Join(kClusterA); }, false},
      {"the third in one of them", "host5", [] { MoveTo("host5", "west"); }, true},
      {"a witness's own does not count", "host6", [] { MoveTo("host6", "north"); }, true},
      {"witness leaves", "host6", [] { Leave(kClusterA); }, false},
  };
  for (const auto& [what, host, act, isStretched] : acts) {
    StandOn(host);
    act();
    EXPECT_EQ(IsStretched("host1"), isStretched) << what;
  }
}

TEST_F(StretchedTest, Refusals) {
  ExpectRefused([] { Prefer("", kClusterA); }, "a witness must name its preferred fault domain");
  ExpectRefused([] { Prefer("north", kClusterA); },
                "'north' is no fault domain of the cluster's data hosts; theirs are 'east' and "
                "'west'");
  StandOn("host1");
  EXPECT_EQ(Preferred(kClusterA), Preference("east", KorelUtil::GetFaultDomainId()));
  ExpectRefused([] { Prefer("west", kClusterA); },
                "the preferred fault domain of cluster " + kClusterA + " is set on its witness");
}

}  // namespace
}  // namespace lab_test
