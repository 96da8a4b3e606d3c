#include "lab/commands/Commands.h"
#include "lab/memory/Copies.h"

namespace lab {

LabSave::LabSave() {
  SetDescription("Write the whole lab, its history included, to another file, which is a lab too.");
}

std::shared_ptr<InputSpec> LabSave::GetInputSpecInternal() {
  return Inputs(
      {{.name = "file", .shortName = "f", .required = true, .description = "The file to write."},
       {.name = "force", .type = ParameterType::Flag, .description = "Replace an existing file."}});
}

std::shared_ptr<OutputSpec> LabSave::GetOutputSpecInternal() { return Answers(MetaBool::New()); }

void LabSave::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    SaveLab(input->GetParameter("file"), input->IsFlagSet("force"));
    Succeed(output);
  });
}

}  // namespace lab
