#include "korel/policy/PolicyClasses.h"

#include "korel/frame/Frame.h"

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

}  // namespace OstrelCli::KorelNamespace
