#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabHostAdd final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "name",
          .shortName = "n",
          .required = true,
          .description =
              "Name of the new host: up to 80 letters, digits, points, underscores and hyphens, a letter or digit first."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    ChangeLab([&](Store& store) { AddHost(store, StandardHost(input->GetParameter("name"))); });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewHostAdd() { return std::make_shared<LabHostAdd>(); }

}  // namespace lab
