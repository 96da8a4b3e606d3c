#include "lab/commands/Commands.h"
#include "lab/model/Lab.h"

namespace lab {

LabHostAdd::LabHostAdd() {
  SetDescription(
      "Add a host with the standard devices and interfaces. KOREL_LAB_HOST picks the host that "
      "commands act on.");
}

std::shared_ptr<InputSpec> LabHostAdd::GetInputSpecInternal() {
  return Inputs({{.name = "name",
                  .shortName = "n",
                  .required = true,
                  .description = "Name of the new host: up to 80 letters, digits, points, "
                                 "underscores and hyphens, a letter or digit first."}});
}

std::shared_ptr<OutputSpec> LabHostAdd::GetOutputSpecInternal() { return Answers(MetaBool::New()); }

void LabHostAdd::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    ChangeLab([&](Store& store) { AddHost(store, StandardHost(input->GetParameter("name"))); });
    Succeed(output);
  });
}

}  // namespace lab
