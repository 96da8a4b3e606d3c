#include "tests/lab/Script.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using HostStateTest = RowsTest;

TEST_F(HostStateTest, PoliciesAreEachHostsOwnSetPerClassAndClearedTogether) {
  AddHostsUpTo(2);
  const std::string standard = "copies=2,stripes=1,reserved-percent=0,checksum=on";
  const std::string full = "copies=2,stripes=1,reserved-percent=100,checksum=on";
  // A plus and a percent sign stand for what is built in.
  const auto policies = [&] {
    std::string all;
    for (const auto policyClass : KorelUtil::GetKorelPolicyClasses()) {
      const std::string policy = At("host1")->GetDefaultPolicy(policyClass);
      all += (all.empty() ? "" : " ") + (policy == standard ? "+" : policy == full ? "%" : policy);
    }
    return all;
  };
  Expect(policies, R"(
                                                      -> + + + % %
2 policy vdisk copies=1                               -> + + + % %
1 policy vdisk reserved-percent=100,checksum=off; 2 unpolicy -> + reserved-percent=100,checksum=off + % %
1 policy vmem checksum=on,reserved-percent=0          -> + + + % checksum=on,reserved-percent=0
1 policy vmnamespace copies=4,stripes=12              -> + + copies=4,stripes=12 % %
1 policy cluster copies=1; 1 policy cluster stripes=1 -> stripes=1 + + % %
1 policy vmswap copies=1; 1 policy vmnamespace copies=1; 1 unpolicy -> + + + % %
)");
  for (const auto& [good, pair, why] : {
           std::tuple("copies=2,", "copies", "it is not of the form key=value"),
           {"copies=2,", "", "it is not of the form key=value"},
           {"copies=2,", "Copies=2", "there is no key 'Copies', did you mean 'copies'?"},
           {"copies=2,", " stripes=1", "there is no key ' stripes', did you mean 'stripes'?"},
           {"copies=2,", "copies=2", "copies is there twice"},
           {"", "checksum=true", "checksum is on or off"},
           {"", "copies=0", "copies is a number from 1 to 4"},
           {"", "copies=5", "copies is a number from 1 to 4"},
           {"", "stripes=0", "stripes is a number from 1 to 12"},
           {"", "stripes=13", "stripes is a number from 1 to 12"},
           {"stripes=1,", "reserved-percent=-1", "reserved-percent is a number from 0 to 100"},
           {"stripes=1,", "reserved-percent=101", "reserved-percent is a number from 0 to 100"},
           {"stripes=1,", "reserved-percent=01", "reserved-percent is a number from 0 to 100"},
       }) {
    const std::string policy = std::string(good) + pair;
    ExpectRefused(
        [&] { HostControl()->SetDefaultPolicy(Tovrin::Korel::KorelPolicyClass::Vmem, policy); },
        "the policy pair '" + std::string(pair) + "' is not possible: " + why);
  }
  ExpectRefusals("1 policy vmem - -> a policy has at least one pair, such as copies=2");
}

TEST_F(HostStateTest, KorelMaxAndDiskGroupsExcludeEachOther) {
  MakeHosts("c1 s1 c2 / c1 s1");
  ASSERT_EQ(Play("1 create A; 2 join A"), "");
  ExpectRefusals(R"(
1 claim c1 s1; 1 max on -> the host has disk groups; they must be removed before...
1 max on; 1 claim c1 s1 -> the host has the Korel Max role, which takes no disk groups
)");
  Expect([] { return ""; }, R"(
2 claim c1 s1; 1 max on; 1 pool c2                                    ->
1 pool c2; 1 max on; 2 claim c1 s1                                    ->
1 max on; 1 max off; 1 claim c1 s1; 1 max off; 1 ungroup c1; 1 max on ->
)");
}

}  // namespace
}  // namespace lab_test
