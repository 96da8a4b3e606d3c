#include "lab/commands/ChangeList.h"
#include "lab/commands/Commands.h"
#include "lab/memory/Copies.h"

namespace lab {

LabDiff::LabDiff() {
  SetDescription("Show what has to change in another lab to make it this one, row by row.");
  Show(*this, *NoChanges()->GetPrototype(), "table");
}

std::shared_ptr<InputSpec> LabDiff::GetInputSpecInternal() {
  return Inputs({{.name = "file",
                  .shortName = "f",
                  .required = true,
                  .description = "The other lab, as 'lab save' wrote it."}});
}

std::shared_ptr<OutputSpec> LabDiff::GetOutputSpecInternal() { return Answers(NoChanges()); }

void LabDiff::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    output->SetRootObject(ListOfChanges(DifferenceFrom(input->GetParameter("file"))));
  });
}

}  // namespace lab
