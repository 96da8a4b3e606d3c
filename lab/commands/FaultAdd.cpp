#include "lab/commands/Commands.h"
#include "lab/model/Faults.h"
#include "lab/model/Lab.h"

namespace lab {

LabFaultAdd::LabFaultAdd() {
  SetDescription(
      "Make a host control operation fail with a message of your choice, before it does anything. "
      "GetKorelInfo then yields no object. Replaces an earlier fault of the operation.");
}

std::shared_ptr<InputSpec> LabFaultAdd::GetInputSpecInternal() {
  return Inputs({{.name = "operation",
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
                  .description = "How many calls fail, of all processes together. All when not "
                                 "given."}});
}

std::shared_ptr<OutputSpec> LabFaultAdd::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void LabFaultAdd::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    Fault fault{input->GetParameter("operation"), input->GetParameter("message"), std::nullopt};
    if (input->HasParameter("count")) fault.remaining = input->GetParameterInt("count");
    ChangeLab([&](Store& store) { AddFault(store, fault); });
    Succeed(output);
  });
}

}  // namespace lab
