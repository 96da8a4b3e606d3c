#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Hardware.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabDiskRemove final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({{.name = "device",
                    .shortName = "d",
                    .required = true,
                    .description = "Name of the device, which must not be in use."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    ChangeLab([&](Store& store) {
      RemoveDevice(store, CurrentHost(store), input->GetParameter("device"));
    });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewDiskRemove() { return std::make_shared<LabDiskRemove>(); }

}  // namespace lab
