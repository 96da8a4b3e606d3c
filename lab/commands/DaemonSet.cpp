#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Lab.h"
#include "lab/model/TraceDaemon.h"

namespace lab {
namespace {

constexpr int kLeast = -255;
constexpr int kMost = 255;

class LabDaemonSet final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "status",
          .shortName = "s",
          .type = ParameterType::Int,
          .constraint = IntRange(kLeast, kMost),
          .description =
              "Answer to \"status\"; a negative one says that the script could not be run."},
         {.name = "restart-status",
          .shortName = "r",
          .type = ParameterType::Int,
          .constraint = IntRange(kLeast, kMost),
          .description = "Answer to \"restart\", which is not done unless this is 0."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    const auto given = [&](const char* name) {
      return input->HasParameter(name)
                 ? std::optional(static_cast<int>(input->GetParameterInt(name)))
                 : std::nullopt;
    };
    ChangeLab([&](Store& store) {
      SetTraceAnswers(store, CurrentHost(store), {given("status"), given("restart-status")});
    });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewDaemonSet() { return std::make_shared<LabDaemonSet>(); }

}  // namespace lab
