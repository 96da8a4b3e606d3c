#include "korel/frame/CallOptional.h"
#include "korel/policy/Commands.h"
#include "korel/policy/PolicyClasses.h"
#include "platform/hostctl/Optional.h"

namespace OstrelCli::KorelNamespace {

PolicyClearDefault::PolicyClearDefault() {
  SetDescription("Reset the default Korel storage policy values to the built-in ones.");
}

std::shared_ptr<InputSpec> PolicyClearDefault::GetInputSpecInternal() {
  const auto classes = PolicyClasses();
  return Inputs({{.name = "policy-class",
                  .shortName = "c",
                  .constraint = classes,
                  .description = StrCat("Reset only the default of this policy class. ",
                                        classes ? "Options are: %ENUM%. " : "",
                                        "If not specified, all are reset.")}});
}

void PolicyClearDefault::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, "Unable to clear default policy: ", [&] {
    if (!input->HasParameter("policy-class")) {
      const HostControl host;
      host->ClearDefaultPolicies();
      return Succeed(output);
    }
    const auto policyClass =
        KorelUtil::StringToKorelPolicyClass(input->GetParameter("policy-class"));
    const HostControl host;
    CallOptional(&Tovrin::Korel::ClearDefaultPolicy, "clear the default policy of one class", *host,
                 policyClass);
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
