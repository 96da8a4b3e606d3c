#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/memory/Copies.h"

namespace lab {
namespace {

class LabLoad final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({{.name = "file",
                    .shortName = "f",
                    .required = true,
                    .description = "The lab to load, as 'lab save' wrote it."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    LoadLab(input->GetParameter("file"));
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewLoad() { return std::make_shared<LabLoad>(); }

}  // namespace lab
