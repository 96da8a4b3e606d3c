#include "korel/policy/PolicyClasses.h"

#include "platform/hostctl/KorelUtil.h"

namespace OstrelCli::KorelNamespace {

std::shared_ptr<Corvex::CallSpec::ParameterConstraint> PolicyClasses() {
  using Corvex::CallSpec::ParameterConstraint;
  using HskCtl::Korel::KorelUtil;
  auto constraint = ParameterConstraint::New(Corvex::CallSpec::ParameterConstraintType::StringEnum);
  for (const auto policyClass : KorelUtil::GetKorelPolicyClasses()) {
    constraint->AddStringEnum(KorelUtil::KorelPolicyClassToString(policyClass));
  }
  return constraint;
}

}  // namespace OstrelCli::KorelNamespace
