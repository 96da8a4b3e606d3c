#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Lab.h"
#include "lab/model/TraceDaemon.h"

namespace lab {
namespace {

class LabDaemonStart final : public LabCommand {
 private:
  void Run(const InputPtr&, const OutputPtr& output) override {
    ChangeLab([](Store& store) { StartTraceDaemon(store, CurrentHost(store)); });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewDaemonStart() { return std::make_shared<LabDaemonStart>(); }

}  // namespace lab
