#include "lab/commands/LabCommand.h"

#include "platform/hostctl/KorelCtlException.h"

namespace lab {

std::shared_ptr<InputSpec> LabCommand::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> LabCommand::GetOutputSpecInternal() { return Answers(MetaBool::New()); }

void LabCommand::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  try {
    Run(input, output);
  } catch (const Tovrin::Lib::Korel::KorelCtlException& failure) {
    Refuse(output, failure.GetMessage());
  }
}

Parameter HostName() {
  return {.name = "name",
          .shortName = "n",
          .description = "Name of the host; the one that commands act on when not given."};
}

Parameter HostFilePath() {
  return {.name = "path",
          .shortName = "p",
          .required = true,
          .description = "Path of the file on the host: \"/etc/ostrel/korel/koreltraced.conf\"."};
}

Host ChosenHost(Store& store, const InputPtr& input) {
  return input->HasParameter("name") ? HostNamed(store, input->GetParameter("name"))
                                     : CurrentHost(store);
}

}  // namespace lab
