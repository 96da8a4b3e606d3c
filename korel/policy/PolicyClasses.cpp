#include "korel/policy/PolicyClasses.h"

#include "korel/frame/Frame.h"
#include "platform/hostctl/Optional.h"

namespace OstrelCli::KorelNamespace {

std::shared_ptr<Corvex::CallSpec::ParameterConstraint> PolicyClasses() {
  using Corvex::CallSpec::ParameterConstraint;
  auto constraint = ParameterConstraint::New(Corvex::CallSpec::ParameterConstraintType::StringEnum);
  // Help needs no host; the execution asks again and reports the failure.
  const auto failure = FailureOf([&] {
    for (const auto policyClass : KorelUtil::GetKorelPolicyClasses()) {
      constraint->AddStringEnum(KorelUtil::KorelPolicyClassToString(policyClass));
    }
  });
  return failure || constraint->GetValues().empty() ? nullptr : constraint;
}

std::string PolicyKeys() {
  if (Tovrin::Korel::DescribePolicyKeys == nullptr) return "";
  std::string keys;
  const auto failure = FailureOf([&] {
    for (const std::string& key : Tovrin::Korel::DescribePolicyKeys()) {
      keys += (keys.empty() ? "" : ", ") + key;
    }
  });
  if (failure || keys.empty()) return "";
  return ": KEY=VALUE, several with commas between them. Keys are: " + keys;
}

}  // namespace OstrelCli::KorelNamespace
