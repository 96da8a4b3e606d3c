#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Lab.h"
#include "lab/model/TraceDaemon.h"

namespace lab {
namespace {

class LabDaemonStop final : public LabCommand {
 private:
  void Run(const InputPtr&, const OutputPtr& output) override {
    ChangeLab([](Store& store) { StopTraceDaemon(store, CurrentHost(store)); });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewDaemonStop() { return std::make_shared<LabDaemonStop>(); }

}  // namespace lab
