#include "tests/support/RecordingHost.h"

namespace test {
namespace {

void Enabled(RecordingHost& host) { host.enabled = true; }
void Client(RecordingHost& host) { host.clientMode = true; }
TEST(FaultDomain, IsReadAndSet) {
  const std::string set = "faultdomain set -n ";
  const std::string info = "GetClusterInfo true";
  const std::string longest(256, 'f');
  std::string wide;
  for (int i = 0; i < 100; ++i) wide += "\xE2\x82\xAC";
  const std::string tooLong = "error: Fault domain name cannot exceed 256 characters. | true";
  Check({
      {"faultdomain get", nullptr, "FaultDomain{faultDomainName=fd1, faultDomainId=}",
       "GetFaultDomainName | " + info},
      {"faultdomain get", Enabled, "FaultDomain{faultDomainName=fd1, faultDomainId=id1}",
       "GetFaultDomainName | " + info + " | GetFaultDomainId"},
      {"faultdomain get", Failing("GetFaultDomainId", Enabled),
       "error: Unable to get fault domain name: no luck | none",
       "GetFaultDomainName | " + info + " | GetFaultDomainId"},
      {set + longest, Enabled, "true", info + " | SetFaultDomainName " + longest},
      {set + longest + "f", Enabled, tooLong, ""},
      {set + wide, Enabled, tooLong, ""},
      {set + "''", Enabled, "true", info + " | ResetFaultDomain"},
      {set + "fd1", nullptr,
       "error: Unable to set fault domain name: because Korel is not enabled | none", info},
      {set + "fd1", Failing("SetFaultDomainName", Enabled),
       "error: Unable to set fault domain name: no luck | none",
       info + " | SetFaultDomainName fd1"},
      {"faultdomain reset", nullptr, "true", "ResetFaultDomain"},
      {"faultdomain reset", Failing("ResetFaultDomain"),
       "error: Unable to reset fault domain name | none", "ResetFaultDomain"},
  });
}

TEST(MaintenanceMode, CancelAnswersFalseWhenItFails) {
  Check({
      {"maintenancemode cancel", nullptr, "true", "DecomCancel"},
      {"maintenancemode cancel", Failing("DecomCancel"), "error: no luck | false", "DecomCancel"},
  });
}

TEST(Resync, IsNotForClients) {
  const std::string set = "resync throttle set --level ";
  const std::string client = "IsClientModeEnabled";
  const std::string throttling =
      "error: Resync throttling is not supported with client mode | none";
  const auto number = [](RecordingHost& host) { host.number = 7; };
  Check({
      {set + "0", nullptr, "true", client + " | SetResyncThrottle 0"},
      {set + "512", nullptr, "true", client + " | SetResyncThrottle 512"},
      {set + "513", nullptr, "usage: option \"--level\" takes 0 to 512, not \"513\"", ""},
      {set + "-1", nullptr, "usage: option \"--level\" takes 0 to 512, not \"-1\"", ""},
      {set + "1", Client, throttling, client},
      {set + "1", Failing("SetResyncThrottle"), "error: no luck | none",
       client + " | SetResyncThrottle 1"},
      {"resync throttle get", number, "ResyncThrottle{Level=7}", client + " | GetResyncThrottle"},
      {"resync throttle get", Client, throttling, client},
      {"resync throttle get", Failing("GetResyncThrottle"), "error: no luck | none",
       client + " | GetResyncThrottle"},
      {"resync bandwidth get", number, "ResyncBandwidth{Rate=7}", client + " | GetResyncBandwidth"},
      {"resync bandwidth get", Client,
       "error: Resync bandwidth is not supported with client mode | none", client},
      {"resync bandwidth get", Failing("GetResyncBandwidth"), "error: no luck | none",
       client + " | GetResyncBandwidth"},
  });
}

TEST(Policy, HasADefaultPerClass) {
  const auto row = [](const std::string& name, const std::string& number) {
    return "Policy{Policy Class=" + name + ", Policy Value=value " + number + "}";
  };
  const auto failing = [](const std::string& verb) {
    return "error: Unable to " + verb + " default policy: no luck | none";
  };
  Check({
      {"policy getdefault", nullptr,
       "[" + row("cluster", "0") + ", " + row("vdisk", "1") + ", " + row("vmnamespace", "2") +
           ", " + row("vmswap", "3") + ", " + row("vmem", "4") + "]",
       "GetDefaultPolicy 0 | GetDefaultPolicy 1 | GetDefaultPolicy 2 | GetDefaultPolicy 3 | "
       "GetDefaultPolicy 4"},
      {"policy getdefault -c vmswap", nullptr, "[" + row("vmswap", "3") + "]",
       "GetDefaultPolicy 3"},
      {"policy getdefault", Failing("GetDefaultPolicy"), failing("get"), "GetDefaultPolicy 0"},
      {"policy setdefault -c vdisk -p copies=2", nullptr, "true", "SetDefaultPolicy 1 copies=2"},
      {"policy setdefault -c vdisk -p ''", Failing("SetDefaultPolicy"), failing("set"),
       "SetDefaultPolicy 1 \"\""},
      {"policy cleardefault", nullptr, "true", "ClearDefaultPolicies"},
      {"policy cleardefault", Failing("ClearDefaultPolicies"), failing("clear"),
       "ClearDefaultPolicies"},
  });
}

}  // namespace
}  // namespace test
