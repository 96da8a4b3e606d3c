#include "lab/commands/Commands.h"
#include "lab/model/Features.h"
#include "lab/model/Lab.h"

namespace lab {

LabFeatureSet::LabFeatureSet() { SetDescription("Switch a feature on or off."); }

std::shared_ptr<InputSpec> LabFeatureSet::GetInputSpecInternal() {
  std::vector<ParameterConstraint::EnumValue> names;
  for (const std::string& name : FeatureNames()) names.push_back({name, ""});
  return Inputs({{.name = "name",
                  .shortName = "n",
                  .required = true,
                  .constraint = StringEnum(names),
                  .description = "The feature: %ENUM%."},
                 {.name = "enabled",
                  .shortName = "e",
                  .type = ParameterType::Bool,
                  .required = true,
                  .description = "Whether the host has the feature."}});
}

std::shared_ptr<OutputSpec> LabFeatureSet::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void LabFeatureSet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    ChangeLab([&](Store& store) {
      SetFeature(store, input->GetParameter("name"), input->GetParameterBool("enabled"));
    });
    Succeed(output);
  });
}

}  // namespace lab
