#include "korel/policy/Commands.h"
#include "tests/support/RecordingHost.h"

namespace test {

TEST(Policy, HasADefaultPerClass) {
  const Hosts hosts = {{"no classes", [](RecordingHost& host) { host.policyClasses.clear(); }}};
  // The classes are asked for the declaration, and again for all of them.
  const Names names = {{"$asked", "GetKorelPolicyClasses"},
                       {"$swap", "{Policy Class=vmswap, Policy Value=value 3}"}};
  Check(hosts, names, R"(
policy getdefault -> [Policy{Policy Class=cluster, Policy Value=value 0}, Policy$swap] <- $asked | $asked | GetDefaultPolicy 0 | GetDefaultPolicy 3
policy getdefault -c vmswap -> [Policy$swap] <- $asked | $asked | GetDefaultPolicy 3
policy setdefault -c vmswap -p copies=2 -> true <- $asked | SetDefaultPolicy 3 copies=2
policy setdefault -c vmswap -p '' -> true <- $asked | SetDefaultPolicy 3 ""
policy cleardefault -> true <- $asked | ClearDefaultPolicies
policy cleardefault -c vmswap -> true <- $asked | ClearDefaultPolicy 3
! error: Unable to clear default policy: no luck | none
policy cleardefault -c vdisk / policy getdefault -c vdisk / policy setdefault -c vdisk -p copies=2
  -> usage: option "--policy-class" takes one of "cluster", "vmswap", not "vdisk" <- $asked
[GetKorelPolicyClasses fails] policy getdefault -> error: Unable to get default policy: no luck | none <- $asked | $asked
[no classes] policy getdefault -> [] <- $asked | $asked
[no classes] policy getdefault -c vmswap -> [Policy$swap] <- $asked | $asked | GetDefaultPolicy 3
[GetKorelPolicyClasses fails] policy setdefault -c vmswap -p copies=2 /
  [no classes] policy setdefault -c vmswap -p copies=2 -> true
  <- $asked | SetDefaultPolicy 3 copies=2
[no classes] policy setdefault -c disk -p copies=2 -> error: Unable to set default policy: 'disk' is
  no policy class; the classes are cluster, vdisk, vmnamespace, vmswap, vmem | none <- $asked
)");
}

TEST(Policy, ClassesAndKeysAreExplainedIfTheHostTellsThem) {
  using namespace OstrelCli::KorelNamespace;
  const auto descriptions = [] {
    return PolicyGetDefault::New()->GetInputSpec()->GetParameters()[0]->GetDescription() + "\n" +
           PolicySetDefault::New()->GetInputSpec()->GetParameters()[0]->GetDescription() + "\n" +
           PolicyClearDefault::New()->GetInputSpec()->GetParameters()[0]->GetDescription();
  };
  RecordingHost host;
  EXPECT_EQ(descriptions(),
            "Show only the default of this policy class. Options are: %ENUM%. If not specified, "
            "all are shown.\nPolicy class to set the default of. Options are: %ENUM%.\n"
            "Reset only the default of this policy class. Options are: %ENUM%. If not specified, "
            "all are reset.");
  const std::string bare =
      "Show only the default of this policy class. If not specified, all are shown.\n"
      "Policy class to set the default of.\n"
      "Reset only the default of this policy class. If not specified, all are reset.";
  host.policyClasses.clear();
  EXPECT_EQ(descriptions(), bare);
  host.policyClasses = {static_cast<Tovrin::Korel::KorelPolicyClass>(7)};
  EXPECT_EQ(descriptions(), bare) << "a class that has no name";
  EXPECT_EQ(PolicySetDefault::New()->GetInputSpec()->GetParameters()[1]->GetDescription(),
            "New default policy value, for objects that are made from now on: KEY=VALUE, several "
            "with commas between them. Keys are: copies (1 to 4), stripes (1 to 12), "
            "reserved-percent (0 to 100), checksum (on or off).");
}

}  // namespace test
