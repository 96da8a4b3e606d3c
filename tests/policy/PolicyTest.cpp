#include "tests/support/RecordingHost.h"

namespace test {

TEST(Policy, HasADefaultPerClass) {
  Check(R"(
policy getdefault -> [Policy{Policy Class=cluster, Policy Value=value 0}, Policy{Policy Class=vdisk,
  Policy Value=value 1}, Policy{Policy Class=vmnamespace, Policy Value=value 2}, Policy{Policy
  Class=vmswap, Policy Value=value 3}, Policy{Policy Class=vmem, Policy Value=value 4}] <-
  GetDefaultPolicy 0 | GetDefaultPolicy 1 | GetDefaultPolicy 2 | GetDefaultPolicy 3 |
  GetDefaultPolicy 4
[GetDefaultPolicy fails] policy getdefault -> error: Unable to get default policy: no luck | none
  <- GetDefaultPolicy 0
policy getdefault -c vmswap -> [Policy{Policy Class=vmswap, Policy Value=value 3}]
  <- GetDefaultPolicy 3
policy setdefault -c vdisk -p copies=2 -> true <- SetDefaultPolicy 1 copies=2
policy setdefault -c vdisk -p '' -> true <- SetDefaultPolicy 1 ""
! error: Unable to set default policy: no luck | none
policy cleardefault -> true <- ClearDefaultPolicies
! error: Unable to clear default policy: no luck | none
)");
}

}  // namespace test
