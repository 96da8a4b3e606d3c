#include "lab/model/Check.h"

#include "lab/commands/Commands.h"
#include "lab/model/Lab.h"

namespace lab {

LabCheck::LabCheck() {
  SetDescription(
      "Examine the lab: the structure of its file, what its rows refer to, and the rules that a "
      "host keeps. Each problem is an error.");
}

std::shared_ptr<InputSpec> LabCheck::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> LabCheck::GetOutputSpecInternal() { return Answers(MetaBool::New()); }

void LabCheck::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
    const auto problems = ReadLab(Problems);
    for (const std::string& problem : problems) Refuse(output, problem);
    if (problems.empty()) Succeed(output);
  });
}

}  // namespace lab
