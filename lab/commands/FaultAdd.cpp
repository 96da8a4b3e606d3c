#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/InjectedFailures.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabFaultAdd final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "operation",
          .shortName = "o",
          .required = true,
          .description = "Name of the operation, as in the call log: \"AddDatastore\"."},
         {.name = "message",
          .shortName = "m",
          .required = true,
          .description = "What the failing call says."},
         {.name = "count",
          .shortName = "c",
          .type = ParameterType::Int,
          .constraint = IntRange(1, INT64_MAX),
          .description = "How many calls fail, of all processes together. All when not given."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    InjectedFailure failure{input->GetParameter("operation"), input->GetParameter("message"),
                            std::nullopt};
    if (input->HasParameter("count")) failure.remaining = input->GetParameterInt("count");
    ChangeLab([&](Store& store) { AddInjectedFailure(store, failure); });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewFaultAdd() { return std::make_shared<LabFaultAdd>(); }

}  // namespace lab
