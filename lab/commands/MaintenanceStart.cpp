#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/HostState.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabMaintenanceStart final : public LabCommand {
 private:
  void Run(const InputPtr&, const OutputPtr& output) override {
    ChangeLab([](Store& store) { StartMaintenance(store, CurrentHost(store)); });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewMaintenanceStart() { return std::make_shared<LabMaintenanceStart>(); }

}  // namespace lab
