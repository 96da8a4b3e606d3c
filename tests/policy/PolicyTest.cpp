#include "tests/support/RecordingHost.h"

namespace test {
namespace {

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
