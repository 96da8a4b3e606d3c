#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/HostState.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabHostReboot final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override { return Inputs({HostName()}); }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    ChangeLab([&](Store& store) { Reboot(store, ChosenHost(store, input)); });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewHostReboot() { return std::make_shared<LabHostReboot>(); }

}  // namespace lab
