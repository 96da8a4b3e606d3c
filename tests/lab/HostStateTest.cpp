#include "lab/model/HostState.h"
#include "tests/lab/ClusterSupport.h"
#include "tests/lab/DiskSupport.h"

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
  EXPECT_EQ(At("host2")->GetResyncThrottle(), 0) << "each host has its own";
}

TEST_F(HostStateTest, MaintenanceGoesOnUntilItIsCancelled) {
  const auto host = HostControl();
  const auto state = [&] { return host->GetClusterInfo(true)->maintenanceState; };
  const auto start = [] { OnHost("host1", lab::StartMaintenance); };
  ExpectRefused(KorelUtil::DecomCancel, "no maintenance mode operation is in progress");
  start();
  EXPECT_EQ(state(), "ENTERING");
  ExpectRefused(start, "a maintenance mode operation is in progress already");
  KorelUtil::DecomCancel();
  EXPECT_EQ(state(), "OFF");
}

TEST_F(HostStateTest, PoliciesAreSetPerClassAndClearedTogether) {
  const auto host = HostControl();
  const std::string builtIn = host->GetDefaultPolicy(KorelPolicyClass::Vdisk);
  const std::string swap = host->GetDefaultPolicy(KorelPolicyClass::VmSwap);
  const std::string policy = "reserved-percent=100,checksum=off,copies=4,stripes=12";
  host->SetDefaultPolicy(KorelPolicyClass::Vdisk, policy);
  EXPECT_EQ(host->GetDefaultPolicy(KorelPolicyClass::Vdisk), policy);
  EXPECT_EQ(host->GetDefaultPolicy(KorelPolicyClass::VmSwap), swap);
  AddHostsUpTo(2);
  At("host2")->ClearDefaultPolicies();
  EXPECT_EQ(At("host1")->GetDefaultPolicy(KorelPolicyClass::Vdisk), policy) << "a host's own";
  host->ClearDefaultPolicies();
  EXPECT_EQ(host->GetDefaultPolicy(KorelPolicyClass::Vdisk), builtIn);
}

TEST_F(HostStateTest, PoliciesAreRefusedWhole) {
  const auto host = HostControl();
  const struct {
    std::string goodPart, badPair, why;
  } cases[] = {
      {"", "copies", "it is not of the form key=value"},
      {"copies=2,", " stripes=1", "there is no key ' stripes', did you mean 'stripes'?"},
      {"", "copies=5", "copies is a number from 1 to 4"},
      {"", "checksum=true", "checksum is on or off"},
      {"copies=2,", "copies=2", "copies is there twice"},
  };
  for (const auto& each : cases) {
    ExpectRefused(
        [&] { host->SetDefaultPolicy(KorelPolicyClass::Cluster, each.goodPart + each.badPair); },
        "the policy pair '" + each.badPair + "' is not possible: " + each.why);
  }
}

TEST_F(HostStateTest, KorelMaxAndDiskGroupsExcludeEachOther) {
  MakeHosts({{Device("c1"), Device("s1")}, {Device("c1"), Device("s1")}});
  Create(kClusterA);
  Claim("c1", {"s1"});
  ExpectRefused([] { HostControl()->SetKorelMaxEnabled(true); },
                "the host has disk groups; they must be removed before it can be a Korel Max host");
  StandOn("host2");
  Create(kClusterB);
  HostControl()->SetKorelMaxEnabled(true);
  ExpectRefused([] { Claim("c1", {"s1"}); },
                "the host has the Korel Max role, which takes no disk groups");
}

}  // namespace
}  // namespace lab_test
