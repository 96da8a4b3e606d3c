#include "tests/support/RecordingHost.h"

namespace test {
namespace {

void Enabled(RecordingHost& host) { host.enabled = true; }

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

}  // namespace
}  // namespace test
