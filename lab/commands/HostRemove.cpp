#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Hardware.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabHostRemove final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "name", .shortName = "n", .required = true, .description = "Name of the host."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    ChangeLab(
        [&](Store& store) { RemoveHost(store, HostNamed(store, input->GetParameter("name"))); });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewHostRemove() { return std::make_shared<LabHostRemove>(); }

}  // namespace lab
