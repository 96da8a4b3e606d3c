#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Features.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabFeatureSet final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
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

  void Run(const InputPtr& input, const OutputPtr& output) override {
    ChangeLab([&](Store& store) {
      SetFeature(store, input->GetParameter("name"), input->GetParameterBool("enabled"));
    });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewFeatureSet() { return std::make_shared<LabFeatureSet>(); }

}  // namespace lab
