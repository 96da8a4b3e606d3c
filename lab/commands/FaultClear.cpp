#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/InjectedFailures.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabFaultClear final : public LabCommand {
 private:
  void Run(const InputPtr&, const OutputPtr& output) override {
    ChangeLab(ClearInjectedFailures);
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewFaultClear() { return std::make_shared<LabFaultClear>(); }

}  // namespace lab
