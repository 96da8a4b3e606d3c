#include "lab/model/Policies.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"
#include "platform/hostctl/Optional.h"

namespace lab {

using Tovrin::Korel::KorelPolicyClass;

void LabKorelInfo::ClearDefaultPolicies() {
  Call("ClearDefaultPolicies", lab::ClearDefaultPolicies);
}

std::string LabKorelInfo::GetDefaultPolicy(KorelPolicyClass policyClass) {
  return Call("GetDefaultPolicy", DefaultPolicy, policyClass);
}

}  // namespace lab

void Tovrin::Korel::SetDefaultPolicy(KorelInfo&, KorelPolicyClass policyClass,
                                     const std::string& value) {
  lab::Call("SetDefaultPolicy", lab::SetDefaultPolicy, policyClass, value);
}

void Tovrin::Korel::ClearDefaultPolicy(KorelInfo&, KorelPolicyClass policyClass) {
  lab::Call("ClearDefaultPolicy", lab::ClearDefaultPolicy, policyClass);
}
