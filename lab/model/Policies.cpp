#include "lab/model/Policies.h"

#include <algorithm>
#include <array>
#include <set>

#include "lab/base/Text.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelPolicyClass;

/// A key whose value is a number. The one other key is "checksum".
struct NumberKey {
  const char* name;
  std::int64_t min;
  std::int64_t max;
};

constexpr std::array<NumberKey, 3> kNumberKeys{
    {{"copies", 1, 4}, {"stripes", 1, 12}, {"reserved-percent", 0, 100}}};

std::string BuiltIn(KorelPolicyClass policyClass) {
  switch (policyClass) {
    case KorelPolicyClass::Cluster:
    case KorelPolicyClass::Vdisk:
    case KorelPolicyClass::VmNamespace:
      return "copies=2,stripes=1,reserved-percent=0,checksum=on";
    case KorelPolicyClass::VmSwap:
    case KorelPolicyClass::Vmem:
      return "copies=2,stripes=1,reserved-percent=100,checksum=on";
  }
  Fail("there is no policy class ", std::to_string(static_cast<int>(policyClass)));
}

/// Why the key cannot have the value; empty when it can.
std::string FaultOf(const std::string& key, const std::string& value) {
  if (key == "checksum") return value == "on" || value == "off" ? "" : "checksum is on or off";
  std::vector<std::string> names{"checksum"};
  for (const auto& [name, min, max] : kNumberKeys) {
    names.emplace_back(name);
    if (key != name) continue;
    const auto number = ParseNumber(value);
    if (number && *number >= min && *number <= max) return "";
    return key + " is a number from " + std::to_string(min) + " to " + std::to_string(max);
  }
  return "there is no key " + Quoted(key) + DidYouMean(key, names);
}

}  // namespace

void CheckPolicy(const std::string& policy) {
  if (policy.empty()) Fail("a policy has at least one pair, such as copies=2");
  std::set<std::string> keys;
  for (const std::string& pair : Split(policy, ',')) {
    const std::size_t equals = pair.find('=');
    const std::string key = pair.substr(0, equals);
    const std::string fault = equals == std::string::npos ? "it is not of the form key=value"
                              : !keys.insert(key).second  ? key + " is there twice"
                                                          : FaultOf(key, pair.substr(equals + 1));
    if (!fault.empty()) Fail("the policy pair ", Quoted(pair), " is not possible: ", fault);
  }
}

std::string DefaultPolicy(Store& store, const Host& host, KorelPolicyClass policyClass) {
  const auto set = Texts(store, "SELECT value FROM policies WHERE host = ? AND class = ?", host.id,
                         static_cast<int>(policyClass));
  return set.empty() ? BuiltIn(policyClass) : set.front();
}

void SetDefaultPolicy(Store& store, const Host& host, KorelPolicyClass policyClass,
                      const std::string& value) {
  BuiltIn(policyClass);
  CheckPolicy(value);
  Execute(store, "INSERT OR REPLACE INTO policies VALUES (?, ?, ?)", host.id,
          static_cast<int>(policyClass), value);
}

void ClearDefaultPolicies(Store& store, const Host& host) {
  Execute(store, "DELETE FROM policies WHERE host = ?", host.id);
}

}  // namespace lab
