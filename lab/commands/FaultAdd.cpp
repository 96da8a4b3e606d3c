#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/InjectedFailures.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabFaultAdd final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "operation",
          .shortName = "o",
          .required = true,
          .description =
              "Name of the operation, such as \"AddDatastore\"; 'autocli lab fault operations' lists them."},
         {.name = "message",
          .shortName = "m",
          .description = "What a failing call says. Without it calls are only delayed."},
         {.name = "count",
          .shortName = "c",
          .type = ParameterType::Int,
          .constraint = IntRange(1, INT64_MAX),
          .description =
              "How many calls are struck, of all processes together. All when not given."},
         {.name = "after",
          .shortName = "a",
          .type = ParameterType::Int,
          .constraint = IntRange(0, INT64_MAX),
          .description = "How many calls succeed first. None when not given."},
         {.name = "delay",
          .shortName = "d",
          .type = ParameterType::Int,
          .constraint = IntRange(1, 3600000),
          .description =
              "Milliseconds that each of the struck calls takes, before it fails or goes on. Others may use the lab meanwhile."},
         {.name = "host",
          .shortName = "H",
          .description = "The host whose calls are struck. Those of all hosts when not given."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    InjectedFailure failure{.operation = input->GetParameter("operation")};
    if (input->HasParameter("message")) failure.message = input->GetParameter("message");
    if (input->HasParameter("count")) failure.count = input->GetParameterInt("count");
    if (input->HasParameter("after")) failure.after = input->GetParameterInt("after");
    if (input->HasParameter("delay")) failure.delayMs = input->GetParameterInt("delay");
    if (input->HasParameter("host")) failure.host = input->GetParameter("host");
    if (!failure.message && failure.delayMs == 0) {
      return Refuse(output, "Specify --message, --delay or both.");
    }
    ChangeLab([&](Store& store) { AddInjectedFailure(store, failure); });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewFaultAdd() { return std::make_shared<LabFaultAdd>(); }

}  // namespace lab
