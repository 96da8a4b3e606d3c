#include "lab/commands/ChangeList.h"
#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/memory/Copies.h"

namespace lab {
namespace {

class LabDiff final : public LabCommand {
 public:
  LabDiff() { Show(*this, *NoChanges()->GetPrototype(), "table"); }

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({{.name = "file",
                    .shortName = "f",
                    .required = true,
                    .description = "The other lab, as 'lab save' wrote it."}});
  }

  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(NoChanges()); }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    output->SetRootObject(ListOfChanges(DifferenceFrom(input->GetParameter("file"))));
  }
};

}  // namespace

CommandPtr NewDiff() { return std::make_shared<LabDiff>(); }

}  // namespace lab
