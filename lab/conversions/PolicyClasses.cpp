#include "lab/conversions/PolicyClasses.h"

#include <array>
#include <utility>

#include "lab/base/Text.h"
#include "lab/conversions/PolicyKeys.h"
#include "platform/hostctl/KorelUtil.h"
#include "platform/hostctl/Optional.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelPolicyClass;

constexpr std::array<std::pair<KorelPolicyClass, const char*>, 5> kPolicyClasses{{
    {KorelPolicyClass::Cluster, "cluster"},
    {KorelPolicyClass::Vdisk, "vdisk"},
    {KorelPolicyClass::VmNamespace, "vmnamespace"},
    {KorelPolicyClass::VmSwap, "vmswap"},
    {KorelPolicyClass::Vmem, "vmem"},
}};

}  // namespace

KorelPolicyClass CheckedPolicyClass(const std::string& text) {
  std::vector<std::string> names;
  for (const auto& [policyClass, name] : kPolicyClasses) {
    if (text == name) return policyClass;
    names.emplace_back(name);
  }
  Fail(Quoted(text), " is no policy class; the classes are ", Joined(names, ", "));
}

}  // namespace lab

namespace HskCtl::Korel {

std::string KorelUtil::KorelPolicyClassToString(KorelPolicyClass policyClass) {
  for (const auto& [known, name] : lab::kPolicyClasses) {
    if (known == policyClass) return name;
  }
  lab::Fail("there is no policy class ", std::to_string(static_cast<int>(policyClass)));
}

}  // namespace HskCtl::Korel

std::vector<std::string> lab::PolicyKeyTexts() {
  std::vector<std::string> texts;
  for (const PolicyKey& key : kPolicyKeys) {
    texts.push_back(key.IsSwitch() ? Tovrin::Misc::StrCat(key.name, " (on or off)")
                                   : Tovrin::Misc::StrCat(key.name, " (", std::to_string(key.min),
                                                          " to ", std::to_string(key.max), ")"));
  }
  return texts;
}

std::vector<std::string> Tovrin::Korel::DescribePolicyKeys() { return lab::PolicyKeyTexts(); }
