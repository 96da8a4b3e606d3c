#include "lab/model/Check.h"

#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabCheck final : public LabCommand {
 private:
  void Run(const InputPtr&, const OutputPtr& output) override {
    const auto problems = ReadLab(Problems);
    for (const std::string& problem : problems) Refuse(output, problem);
    if (problems.empty()) Succeed(output);
  }
};

}  // namespace

CommandPtr NewCheck() { return std::make_shared<LabCheck>(); }

}  // namespace lab
