#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/HostState.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabResyncSet final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({{.name = "rate",
                    .shortName = "r",
                    .type = ParameterType::Int,
                    .required = true,
                    .constraint = IntRange(0, 1'000'000),
                    .description = "What it would use without a throttle, in Mbps (%ENUM%)."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    ChangeLab([&](Store& store) {
      SetResyncRate(store, CurrentHost(store), input->GetParameterInt("rate"));
    });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewResyncSet() { return std::make_shared<LabResyncSet>(); }

}  // namespace lab
