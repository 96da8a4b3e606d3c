#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Hardware.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabInterfaceRemove final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({{.name = "name",
                    .shortName = "n",
                    .required = true,
                    .description = "Name of the interface."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    ChangeLab([&](Store& store) {
      RemoveInterface(store, CurrentHost(store), input->GetParameter("name"));
    });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewInterfaceRemove() { return std::make_shared<LabInterfaceRemove>(); }

}  // namespace lab
