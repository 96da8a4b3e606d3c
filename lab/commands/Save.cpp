#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/memory/Copies.h"

namespace lab {
namespace {

class LabSave final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "file", .shortName = "f", .required = true, .description = "The file to write."},
         {.name = "force",
          .type = ParameterType::Flag,
          .description = "Replace an existing file."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    SaveLab(input->GetParameter("file"), input->IsFlagSet("force"));
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewSave() { return std::make_shared<LabSave>(); }

}  // namespace lab
