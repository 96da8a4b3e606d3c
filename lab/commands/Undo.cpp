#include "lab/memory/Undo.h"

#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"

namespace lab {
namespace {

class LabUndo final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "to",
          .type = ParameterType::Int,
          .description =
              "Number of the entry after which everything is taken back; see 'lab history'."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    if (input->HasParameter("to")) {
      UndoTo(input->GetParameterInt("to"));
    } else {
      UndoLastCommand();
    }
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewUndo() { return std::make_shared<LabUndo>(); }

}  // namespace lab
