#include "korel/frame/CallOptional.h"
#include "korel/policy/Commands.h"
#include "korel/policy/PolicyClasses.h"
#include "platform/hostctl/Optional.h"

namespace OstrelCli::KorelNamespace {

PolicySetDefault::PolicySetDefault() {
  SetDescription("Set the default Korel storage policy value of a policy class.");
}

std::shared_ptr<InputSpec> PolicySetDefault::GetInputSpecInternal() {
  const auto classes = PolicyClasses();
  return Inputs(
      {{.name = "policy-class",
        .shortName = "c",
        .required = true,
        .constraint = classes,
        .description =
            StrCat("Policy class to set the default of.", classes ? " Options are: %ENUM%." : "")},
       {.name = "policy",
        .shortName = "p",
        .required = true,
        .description = StrCat("New default policy value, for objects that are made from now on",
                              PolicyKeys(), ".")}});
}

void PolicySetDefault::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, "Unable to set default policy: ", [&] {
    const auto policyClass =
        KorelUtil::StringToKorelPolicyClass(input->GetParameter("policy-class"));
    const HostControl host;
    CallOptional(&Tovrin::Korel::SetDefaultPolicy, "set default policies", *host, policyClass,
                 input->GetParameter("policy"));
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
