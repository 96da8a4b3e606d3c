#include "lab/memory/Undo.h"

#include "lab/commands/Commands.h"

namespace lab {

LabUndo::LabUndo() {
  SetDescription(
      "Take back what the last command on the lab changed, whichever host it was for, or all that "
      "came after an entry of the history. Doing it twice changes nothing.");
}

std::shared_ptr<InputSpec> LabUndo::GetInputSpecInternal() {
  return Inputs({{.name = "to",
                  .type = ParameterType::Int,
                  .description = "Number of the entry after which everything is taken back; see "
                                 "'lab history'."}});
}

std::shared_ptr<OutputSpec> LabUndo::GetOutputSpecInternal() { return Answers(MetaBool::New()); }

void LabUndo::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    if (input->HasParameter("to")) {
      UndoTo(input->GetParameterInt("to"));
    } else {
      UndoLastCommand();
    }
    Succeed(output);
  });
}

}  // namespace lab
