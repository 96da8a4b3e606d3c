#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/InjectedFailures.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabFaultRemove final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({{.name = "operation",
                    .shortName = "o",
                    .required = true,
                    .description = "Name of the operation."},
                   {.name = "host",
                    .shortName = "H",
                    .description =
                        "The host whose fault goes; all faults of the operation when not given."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    const std::string operation = input->GetParameter("operation");
    std::optional<std::string> host;
    if (input->HasParameter("host")) host = input->GetParameter("host");
    ChangeLab([&](Store& store) { RemoveInjectedFailure(store, operation, host); });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewFaultRemove() { return std::make_shared<LabFaultRemove>(); }

}  // namespace lab
