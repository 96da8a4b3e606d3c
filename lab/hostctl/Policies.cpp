#include "lab/model/Policies.h"

#include "lab/hostctl/Call.h"
#include "lab/hostctl/LabKorelInfo.h"

namespace lab {

using Tovrin::Korel::KorelPolicyClass;

void LabKorelInfo::ClearDefaultPolicies() {
  Call("ClearDefaultPolicies", lab::ClearDefaultPolicies);
}

std::string LabKorelInfo::GetDefaultPolicy(KorelPolicyClass policyClass) {
  return Call("GetDefaultPolicy", DefaultPolicy, policyClass);
}

void LabKorelInfo::SetDefaultPolicy(KorelPolicyClass policyClass, const std::string& value) {
  Call("SetDefaultPolicy", lab::SetDefaultPolicy, policyClass, value);
}

}  // namespace lab
