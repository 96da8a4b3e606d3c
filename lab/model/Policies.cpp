#include "lab/model/Policies.h"

#include <set>

#include "lab/base/Text.h"
#include "lab/conversions/PolicyKeys.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelPolicyClass;

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

std::string KeysToName() { return "the keys are " + Joined(PolicyKeyTexts(), ", "); }

/// Why the key cannot have the value; empty when it can.
std::string FaultOf(const std::string& key, const std::string& value) {
  std::vector<std::string> names;
  for (const PolicyKey& known : kPolicyKeys) {
    names.emplace_back(known.name);
    if (key != known.name) continue;
    if (known.IsSwitch()) return value == "on" || value == "off" ? "" : key + " is on or off";
    const auto number = ParseNumber(value);
    if (number && *number >= known.min && *number <= known.max) return "";
    return key + " is a number from " + std::to_string(known.min) + " to " +
           std::to_string(known.max);
  }
  return "there is no key " + Quoted(key) + "; " + KeysToName() + DidYouMean(key, names);
}

std::string KeyOf(const std::string& pair) { return pair.substr(0, pair.find('=')); }

}  // namespace

void CheckPolicy(const std::string& policy) {
  if (policy.empty()) Fail("a policy has at least one pair, such as copies=2; ", KeysToName());
  std::set<std::string> keys;
  for (const std::string& pair : Split(policy, ',')) {
    const std::size_t equals = pair.find('=');
    const std::string key = KeyOf(pair);
    const std::string fault = equals == std::string::npos
                                  ? "it is not of the form key=value; " + KeysToName()
                              : !keys.insert(key).second ? key + " is there twice"
                                                         : FaultOf(key, pair.substr(equals + 1));
    if (!fault.empty()) Fail("the policy pair ", Quoted(pair), " is not possible: ", fault);
  }
}

std::string DefaultPolicy(Store& store, const Host& host, KorelPolicyClass policyClass) {
  const auto set = Texts(store, "SELECT value FROM policies WHERE host = ? AND class = ?", host.id,
                         static_cast<int>(policyClass));
  auto pairs = Split(BuiltIn(policyClass), ',');
  if (set.empty()) return Joined(pairs, ",");
  for (const std::string& given : Split(set.front(), ',')) {
    for (std::string& pair : pairs) {
      if (KeyOf(pair) == KeyOf(given)) pair = given;
    }
  }
  return Joined(pairs, ",");
}

void SetDefaultPolicy(Store& store, const Host& host, KorelPolicyClass policyClass,
                      const std::string& value) {
  BuiltIn(policyClass);
  CheckPolicy(value);
  Execute(store, "INSERT OR REPLACE INTO policies VALUES (?, ?, ?)", host.id,
          static_cast<int>(policyClass), value);
}

void ClearDefaultPolicy(Store& store, const Host& host, KorelPolicyClass policyClass) {
  BuiltIn(policyClass);
  Execute(store, "DELETE FROM policies WHERE host = ? AND class = ?", host.id,
          static_cast<int>(policyClass));
}

void ClearDefaultPolicies(Store& store, const Host& host) {
  Execute(store, "DELETE FROM policies WHERE host = ?", host.id);
}

}  // namespace lab
