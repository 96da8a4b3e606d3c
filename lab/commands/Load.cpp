#include "lab/commands/Commands.h"
#include "lab/memory/Copies.h"

namespace lab {

LabLoad::LabLoad() {
  SetDescription(
      "Make the lab what a saved one is. Its own history stays, and 'lab undo' takes this back.");
}

std::shared_ptr<InputSpec> LabLoad::GetInputSpecInternal() {
  return Inputs({{.name = "file",
                  .shortName = "f",
                  .required = true,
                  .description = "The lab to load, as 'lab save' wrote it."}});
}

std::shared_ptr<OutputSpec> LabLoad::GetOutputSpecInternal() { return Answers(MetaBool::New()); }

void LabLoad::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    LoadLab(input->GetParameter("file"));
    Succeed(output);
  });
}

}  // namespace lab
