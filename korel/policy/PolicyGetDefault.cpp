#include "korel/policy/Commands.h"
#include "korel/policy/PolicyClasses.h"

namespace OstrelCli::KorelNamespace {

PolicyGetDefault::PolicyGetDefault() {
  SetDescription("Get default Korel storage policy values.");
  Show(*this, *GetOutputStructure(), "table");
}

std::shared_ptr<MetaStruct> PolicyGetDefault::GetOutputStructure() {
  return Structure("Policy",
                   {{"Policy Class", MetaType::String}, {"Policy Value", MetaType::String}});
}

std::shared_ptr<InputSpec> PolicyGetDefault::GetInputSpecInternal() {
  const auto classes = PolicyClasses();
  return Inputs({{.name = "policy-class",
                  .shortName = "c",
                  .constraint = classes,
                  .description = StrCat("Show only the default of this policy class. ",
                                        classes ? "Options are: %ENUM%. " : "",
                                        "If not specified, all are shown.")}});
}

std::shared_ptr<OutputSpec> PolicyGetDefault::GetOutputSpecInternal() {
  return Answers(ListOf(GetOutputStructure()));
}

void PolicyGetDefault::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, "Unable to get default policy: ", [&] {
    auto classes = KorelUtil::GetKorelPolicyClasses();
    if (input->HasParameter("policy-class")) {
      classes = {KorelUtil::StringToKorelPolicyClass(input->GetParameter("policy-class"))};
    }
    const HostControl host;
    const auto list = ListOf(GetOutputStructure());
    for (const auto policyClass : classes) {
      const auto row = GetOutputStructure();
      row->SetField("Policy Class", KorelUtil::KorelPolicyClassToString(policyClass));
      row->SetField("Policy Value", host->GetDefaultPolicy(policyClass));
      list->Add(row);
    }
    output->SetRootObject(list);
  });
}

}  // namespace OstrelCli::KorelNamespace
