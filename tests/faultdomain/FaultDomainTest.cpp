#include "tests/support/RecordingHost.h"

namespace test {

TEST(FaultDomain, IsReadAndSet) {
  std::string wide;
  for (int i = 0; i < 100; ++i) wide += "\xE2\x82\xAC";
  const Names names = {
      {"$info", "GetClusterInfo true"}, {"$longest", std::string(256, 'f')}, {"$wide", wide}};
  Check({}, names, R"(
faultdomain get -> FaultDomain{faultDomainName=fd1, faultDomainId=} <- GetFaultDomainName | $info
[enabled] faultdomain get -> FaultDomain{faultDomainName=fd1, faultDomainId=id1} <- GetFaultDomainName | $info | GetFaultDomainId
[enabled] faultdomain set -n $longest -> true <- $info | SetFaultDomainName $longest
[enabled] faultdomain set -n $longestf / [enabled] faultdomain set -n $wide -> error: Fault domain name cannot exceed 256 characters. | true
[enabled] faultdomain set -n '' -> true <- $info | ResetFaultDomain
faultdomain reset -> true <- ResetFaultDomain
! error: Unable to reset fault domain name | none
)");
}

}  // namespace test
