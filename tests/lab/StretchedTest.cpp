#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;

/// Cluster A's data lies in "east", host1, and "west", host2; its witness prefers "east".
class StretchedTest : public ClustersTest {
 protected:
  StretchedTest() { EXPECT_EQ(Play("1 domain east; 2 domain west; 6 prefer A east"), ""); }
};

/// Whether the cluster is stretched and what is preferred, as its member of that number sees it.
std::string Seen(const std::string& cluster, const std::string& number) {
  StandOn("host" + number);
  std::string name;
  std::string id;
  KorelUtil::GetPreferredFaultDomainInfo(Long(cluster), name, id);
  EXPECT_EQ(id.empty(), name.empty());
  return (KorelUtil::IsInStretchedCluster() ? "stretched " : "plain ") +
         (name.empty() ? "none" : name);
}

TEST_F(StretchedTest, WhileThereIsAWitnessAndDataInTwoFaultDomains) {
  Expect([] { return Seen("A", "1"); }, R"(
                                                             -> stretched east
2 domain / 5 join A; 5 domain west / 5 join A metadata / 6 domain north / 2 reboot / 6 reboot / 1 reboot; 1 restore / 1 type metadata; 2 type metadata -> stretched east
2 domain east / 5 join A / 2 type metadata                   -> plain east
6 leave A / 6 type metadata                                  -> plain none
6 leave A; 6 join A witness west / 6 leave A; 5 join A witness west -> stretched west
1 domain north                                               -> stretched none
1 type metadata / 1 leave A; 1 join A metadata               -> plain none
1 domain north; 1 domain east / 1 domain north; 5 join A; 5 domain east; 1 domain west -> stretched east
5 join A; 6 prefer A host5                                   -> plain host5
)");
  Expect([] { return Seen("B", "3"); }, R"(
                                      -> plain none
3 type metadata                       -> plain none
6 join B witness host3                  -> plain host3
6 join B witness host3; 3 type metadata -> stretched host3
6 join B witness host3; 3 domain x; 3 type metadata; 6 prefer B any -> stretched any
)");
  Expect([] { return Seen("B", "6"); }, R"(
6 join B witness host3            -> stretched host3
6 join B witness host3; 6 leave A -> plain host3
)");
}

TEST_F(StretchedTest, Refusals) {
  ExpectRefusals(R"(
6 prefer A -    -> a witness must name its preferred fault domain, by...
6 prefer A no   -> no data host of the cluster lies in fault domain 'no'; they lie in 'east', 'west'
2 reboot; 6 prefer A no / 6 leave A; 5 join A witness no -> no data host of the cluster lies in...
5 join A; 6 prefer A no -> no data host...; they lie in 'east', 'host5', 'west'
2 domain east; 6 prefer A west -> no data host... 'west'; they lie in 'east'
5 join A metadata; 5 domain no; 6 prefer A no / 6 domain no; 6 prefer A no -> no data host of the cluster lies in...
6 prefer B east -> the host is not in cluster B; ...
1 prefer A west -> the preferred fault domain of cluster A is set on its witness, host 'host6'
3 prefer B host3 -> the preferred fault domain of cluster B is set on its witness; 'korel cluster join --witness-node' on another host makes it that
)");
}

TEST_F(StretchedTest, NamesOfFaultDomainsAtTheirEdges) {
  ASSERT_EQ(Play("1 type metadata; 2 type metadata"), "");
  Expect([] { return ""; }, R"(
5 domain (x)256 / 5 domain (%c3%a9)128 / 6 prefer A (x)256 / 6 prefer A (%c3%a9)256 ->
5 domain %20~%c2%a0%e0%a0%80%ed%9f%bf%ee%80%80%f0%90%80%80%f4%8f%bf%bf / 5 domain $(x)1'"\ ->
5 domain %d7%90%e2%80%8d%20 / 5 domain a%e2%80%a9 / 5 domain a%e2%81%a5 / 5 domain %d8%9d ->
)");
  ExpectRefusals(R"(
5 domain (x)257 / 6 prefer A (%c3%a9)257 -> a fault domain name has 1 to 256 characters, got 257
5 domain -                               -> a fault domain name has 1 to 256 characters, got 0
5 domain (%c3%a9)128x                    -> a fault domain name has at most 256 bytes, got 257
5 domain a%01 / 5 domain a%0a / 6 prefer A a%1f / 5 domain a%7f / 5 domain a%c2%80 / 6 prefer A a%c2%9f -> ... has a control character in it
5 domain %20 / 5 domain (%c2%a0)2 / 6 prefer A %e3%80%80 / 5 domain %e2%a0%80 -> ... has no visible character in it
5 domain %e2%80%8b / 5 domain %ef%b8%8f / 5 domain %f3%a0%81%81 / 5 domain %c2%ad -> ... has no visible character in it
5 domain a%e2%80%8e / 5 domain a%e2%80%8f / 5 domain a%d8%9c / 6 prefer A a%e2%80%aa / 5 domain a%e2%80%ae / 5 domain a%e2%81%a6 / 5 domain a%e2%81%a9 -> ... has a mark of writing direction in it
5 domain a%80 / 5 domain a%c1%bf / 5 domain a%ff / 5 domain a%c3 / 5 domain a%e0%9f%bf / 5 domain a%ed%a0%80 / 5 domain a%f0%8f%bf%bf / 5 domain a%f4%90%80%80 / 6 prefer A a%e2%82 -> ... not UTF-8
)");
}

TEST_F(StretchedTest, IdsOfFaultDomainsFollowFromTheirNames) {
  Expect(KorelUtil::GetFaultDomainId,
         "2 domain west / 5 domain west -> 46bb38bd-d403-8a33-8009-ec58f59dfa7c");
}

}  // namespace
}  // namespace lab_test
