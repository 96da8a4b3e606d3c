#include "lab/model/HostState.h"
#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelPolicyClass;
using HostStateTest = LabTest;

TEST_F(HostStateTest, ThrottleCapsTheResyncWorkload) {
  AddHostsUpTo(2);
  const auto host = At("host1");
  for (const auto& [rate, throttle, bandwidth] :
       {std::tuple{0, 0, 0}, {700, 0, 700}, {700, 512, 512}, {40, 512, 40}}) {
    OnHost("host1", lab::SetResyncRate, rate);
    host->SetResyncThrottle(throttle);
    EXPECT_EQ(host->GetResyncBandwidth(), bandwidth) << rate << " " << throttle;
  }
  ExpectRefused([&] { host->SetResyncThrottle(513); },
                "the resync throttle in Mbps must be from 0 to 512, got 513");
  ExpectRefused([] { OnHost("host1", lab::SetResyncRate, 1'000'001); },
                "the resync rate in Mbps must be from 0 to 1000000, got 1000001");
  EXPECT_EQ(At("host2")->GetResyncThrottle(), 0) << "each host has its own";
}

TEST_F(HostStateTest, MaintenanceGoesOnUntilItIsCancelled) {
  const auto host = HostControl();
  const auto state = [&] { return host->GetClusterInfo(true)->maintenanceState; };
  const auto start = [] { OnHost("host1", lab::StartMaintenance); };
  ExpectRefused(KorelUtil::DecomCancel, "no maintenance mode operation is in progress");
  for (const std::function<void()>& end :
       {std::function(KorelUtil::DecomCancel), std::function([] { Reboot("host1"); })}) {
    EXPECT_EQ(state(), "OFF");
    start();
    EXPECT_EQ(state(), "ENTERING");
    EXPECT_EQ(host->GetClusterInfo(false)->maintenanceState, "");
    ExpectRefused(start, "a maintenance mode operation is in progress already");
    end();
  }
  EXPECT_EQ(state(), "OFF");
}

TEST_F(HostStateTest, PoliciesAreSetPerClassAndClearedTogether) {
  const auto host = HostControl();
  std::vector<std::string> builtIn;
  for (const auto policyClass : KorelUtil::GetKorelPolicyClasses()) {
    builtIn.push_back(host->GetDefaultPolicy(policyClass));
    host->SetDefaultPolicy(policyClass, builtIn.back());
  }
  for (const char* policy : {"copies=1", "reserved-percent=100,checksum=off,copies=4,stripes=12",
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
  const struct {
    std::string goodPart, badPair, why;
  } cases[] = {
      {"", "copies", "it is not of the form key=value"},
      {"copies=2,", "", "it is not of the form key=value"},
      {"copies=2,", " stripes=1", "there is no key ' stripes', did you mean 'stripes'?"},
      {"copies=2,", "mirrors=1", "there is no key 'mirrors'"},
      {"", "copies=5", "copies is a number from 1 to 4"},
      {"", "copies=02", "copies is a number from 1 to 4"},
      {"", "stripes=13", "stripes is a number from 1 to 12"},
      {"", "reserved-percent=101", "reserved-percent is a number from 0 to 100"},
      {"", "copies=99999999999999999999", "copies is a number from 1 to 4"},
      {"", "checksum=true", "checksum is on or off"},
      {"copies=2,", "copies=2", "copies is there twice"},
  };
  for (const auto& each : cases) {
    ExpectRefused(
        [&] { host->SetDefaultPolicy(KorelPolicyClass::Cluster, each.goodPart + each.badPair); },
        "the policy pair '" + each.badPair + "' is not possible: " + each.why);
  }
  ExpectRefused([&] { host->SetDefaultPolicy(KorelPolicyClass::Cluster, ""); },
                "a policy has at least one pair, such as copies=2");
  ExpectRefused([&] { host->GetDefaultPolicy(static_cast<KorelPolicyClass>(9)); },
                "there is no policy class 9");
}

}  // namespace
}  // namespace lab_test
