#include "lab/model/HostState.h"
#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelPolicyClass;

using HostStateTest = LabTest;

TEST_F(HostStateTest, ThrottleCapsTheResyncWorkload) {
  AddHostsUpTo(2);
  const struct {
    std::int64_t rate;
    std::int64_t throttle;
    std::int64_t bandwidth;
  } cases[] = {{0, 0, 0}, {700, 0, 700}, {700, 512, 512}, {700, 1, 1}, {40, 512, 40}};
  const auto host = HostControl();
  for (const auto& each : cases) {
    OnHost("host1", lab::SetResyncRate, each.rate);
    host->SetResyncThrottle(each.throttle);
    EXPECT_EQ(host->GetResyncThrottle(), each.throttle);
    EXPECT_EQ(host->GetResyncBandwidth(), each.bandwidth) << each.rate << " " << each.throttle;
  }
  const auto throttle = [&](std::int64_t mbps) {
    return [&host, mbps] { host->SetResyncThrottle(mbps); };
  };
  ExpectRefusals({{__LINE__, "host1", throttle(-1),
                   "the resync throttle in Mbps must be from 0 to 512, got -1"},
                  {__LINE__, "host1", throttle(513),
                   "the resync throttle in Mbps must be from 0 to 512, got 513"},
                  {__LINE__, "host1", [] { OnHost("host1", lab::SetResyncRate, 1'000'001); },
                   "the resync rate in Mbps must be from 0 to 1000000, got 1000001"}});
  StandOn("host2");
  EXPECT_EQ(HostControl()->GetResyncThrottle(), 0) << "each host has its own";
}

TEST_F(HostStateTest, MaintenanceGoesOnUntilItIsCancelled) {
  const auto host = HostControl();
  const auto state = [&] { return host->GetClusterInfo(true)->maintenanceState; };
  const auto start = [] { OnHost("host1", lab::StartMaintenance); };
  EXPECT_EQ(state(), "OFF");
  ExpectRefused(KorelUtil::DecomCancel, "no maintenance mode operation is in progress");
  start();
  EXPECT_EQ(state(), "ENTERING");
  EXPECT_EQ(host->GetClusterInfo(false)->maintenanceState, "");
  ExpectRefused(start, "a maintenance mode operation is in progress already");
  KorelUtil::DecomCancel();
  EXPECT_EQ(state(), "OFF");
  start();
  Reboot("host1");
  EXPECT_EQ(state(), "OFF");
}

TEST_F(HostStateTest, PoliciesAreSetPerClassAndClearedTogether) {
  const auto host = HostControl();
  std::vector<std::string> builtIn;
  for (const auto policyClass : KorelUtil::GetKorelPolicyClasses()) {
    builtIn.push_back(host->GetDefaultPolicy(policyClass));
    host->SetDefaultPolicy(policyClass, builtIn.back());
  }
  for (const char* policy :
       {"copies=1", "copies=4,stripes=12", "reserved-percent=100,checksum=off,copies=2",
        "stripes=1,reserved-percent=0,checksum=on"}) {
    host->SetDefaultPolicy(KorelPolicyClass::Vdisk, policy);
    EXPECT_EQ(host->GetDefaultPolicy(KorelPolicyClass::Vdisk), policy);
    EXPECT_EQ(host->GetDefaultPolicy(KorelPolicyClass::VmSwap), builtIn[3]);
  }
  host->ClearDefaultPolicies();
  EXPECT_EQ(host->GetDefaultPolicy(KorelPolicyClass::Vdisk), builtIn[1]);
}

TEST_F(HostStateTest, PoliciesAreRefusedWhole) {
  const auto host = HostControl();
  const auto bad = [](const std::string& pair, const std::string& why) {
    return "the policy pair '" + pair + "' is not possible: " + why;
  };
  const std::pair<std::string, std::string> cases[] = {
      {"", "a policy has at least one pair, such as copies=2"},
      {"copies", bad("copies", "it is not of the form key=value")},
      {"copies=2,", bad("", "it is not of the form key=value")},
      {"copies=2, stripes=1", bad(" stripes=1",
                                  "there is no key ' stripes', did you mean "
                                  "'stripes'?")},
      {"copies=2,mirrors=1", bad("mirrors=1", "there is no key 'mirrors'")},
      {"copies=0", bad("copies=0", "copies is a number from 1 to 4")},
      {"copies=5", bad("copies=5", "copies is a number from 1 to 4")},
      {"copies=02", bad("copies=02", "copies is a number from 1 to 4")},
      {"copies=", bad("copies=", "copies is a number from 1 to 4")},
      {"stripes=13", bad("stripes=13", "stripes is a number from 1 to 12")},
      {"reserved-percent=101",
       bad("reserved-percent=101", "reserved-percent is a number from 0 to 100")},
      {"reserved-percent=99999999999999999999",
       bad("reserved-percent=99999999999999999999", "reserved-percent is a number from 0 to 100")},
      {"checksum=true", bad("checksum=true", "checksum is on or off")},
      {"copies=2,copies=2", bad("copies=2", "copies is there twice")},
  };
  for (const auto& [policy, message] : cases) {
    SCOPED_TRACE(policy);
    ExpectRefused(
        [&, &tried = policy] { host->SetDefaultPolicy(KorelPolicyClass::Cluster, tried); },
        message);
  }
  const auto unknown = static_cast<KorelPolicyClass>(9);
  ExpectRefused([&] { host->SetDefaultPolicy(unknown, "copies=2"); }, "there is no policy class 9");
  ExpectRefused([&] { host->GetDefaultPolicy(unknown); }, "there is no policy class 9");
}

}  // namespace
}  // namespace lab_test
