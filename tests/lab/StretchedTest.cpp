#include "tests/lab/Script.h"

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
2 domain east                    -> plain east
2 domain                         -> stretched east
5 join A                         -> plain east
5 join A; 5 domain west          -> stretched east
5 join A metadata                -> stretched east
6 domain north                   -> stretched east
2 reboot                         -> stretched east
6 reboot                         -> stretched east
2 type metadata                  -> plain east
6 leave A                        -> plain none
6 type metadata                  -> plain none
6 leave A; 6 join A witness west -> stretched west
5 join A witness west; 6 leave A -> stretched west
1 type metadata; 2 type metadata -> stretched east
2 domain east; 6 prefer A north  -> plain north
5 join A; 6 prefer A north       -> plain north
)");
  Expect([] { return Seen("B", "3"); }, R"(
                                      -> plain none
6 join B witness any                  -> plain any
6 join B witness any; 3 type metadata -> stretched any
3 type metadata                       -> plain none
)");
  Expect([] { return Seen("B", "6"); }, R"(
6 join B witness any            -> stretched any
6 join B witness any; 6 leave A -> plain any
)");
}

TEST_F(StretchedTest, Refusals) {
  ExpectRefusals(R"(
6 prefer A -    -> a witness must name its preferred fault domain
6 prefer A no   -> 'no' is no fault domain of the cluster's data hosts; theirs are 'east' and 'west'
2 reboot; 6 prefer A no -> 'no' is no fault domain of the cluster's data...
5 join A witness no -> 'no' is no fault domain of the cluster's data...
5 join A metadata; 5 domain no; 6 prefer A no -> 'no' is no fault domain of the cluster's data...
6 domain no; 6 prefer A no -> 'no' is no fault domain of the cluster's data...
6 prefer B east -> the host is not in cluster B
1 prefer A west -> the preferred fault domain of cluster A is set on its witness
)");
}

std::string Times(int count, const std::string& text) {
  std::string whole;
  for (int i = 0; i < count; ++i) whole += text;
  return whole;
}

TEST_F(StretchedTest, NamesOfFaultDomainsAtTheirEdges) {
  ASSERT_EQ(Play("2 domain east"), "");
  const auto prefer = [](const std::string& name) {
    At("host6")->SetPreferredFaultDomain(name, kClusterA);
  };
  const auto move = [](const std::string& name) { At("host5")->SetFaultDomainName(name); };
  const std::string wide = "\xc3\xa9";
  for (const std::string& good :
       {std::string("x"), std::string("$(reboot) 'a\"\\;~\xc2\xa0"), Times(256, "x"),
        Times(128, wide),
        std::string("\xe0\xa0\x80\xed\x9f\xbf\xee\x80\x80\xf0\x90\x80\x80\xf4\x8f\xbf\xbf")}) {
    prefer(good);
    EXPECT_EQ(Seen("A", "1"), "plain " + good);
    move(good);
    EXPECT_EQ(At("host5")->GetFaultDomainName(), good);
  }
  prefer(Times(256, wide));
  ExpectRefused([&] { move(Times(128, wide) + "x"); },
                "a fault domain name has at most 256 bytes, got 257");
  std::vector<std::pair<std::string, std::string>> bad = {
      {"", "a fault domain name has 1 to 256 characters, got 0"},
      {Times(257, wide), "a fault domain name has 1 to 256 characters, got 257"}};
  for (const char* end : {"\x01", "\n", "\x1f", "\x7f", "\xc2\x80", "\xc2\x9f"}) {
    bad.emplace_back(end,
                     std::string("fault domain name '") + end + "' has a control character in it");
  }
  for (const char* end : {"\x80", "\xc1\xbf", "\xff", "\xc3", "\xe0\x9f\xbf", "\xed\xa0\x80",
                          "\xf0\x8f\xbf\xbf", "\xf4\x90\x80\x80", "\xe2\x82"}) {
    bad.emplace_back(end, std::string("fault domain name '") + end + "' is not UTF-8");
  }
  for (const auto& [name, message] : bad) {
    ExpectRefused([&, &tried = name] { move(tried); }, message);
    if (!name.empty()) ExpectRefused([&, &tried = name] { prefer(tried); }, message);
  }
}

TEST_F(StretchedTest, IdsFollowFromNames) {
  const auto id = [](const std::string& script) {
    EXPECT_EQ(Play(script), "");
    return KorelUtil::GetFaultDomainId();
  };
  const std::string east = id("1 domain east");
  EXPECT_EQ(id("3 domain east"), east);
  EXPECT_NE(id("3 domain eas"), east);
  EXPECT_EQ(id("3 domain host5"), id("5 domain"));
}

}  // namespace
}  // namespace lab_test
