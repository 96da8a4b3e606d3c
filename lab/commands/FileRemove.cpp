#include "lab/commands/Commands.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"

namespace lab {

LabFileRemove::LabFileRemove() { SetDescription("Take a file from the host."); }

std::shared_ptr<InputSpec> LabFileRemove::GetInputSpecInternal() {
  return Inputs({{.name = "path",
                  .shortName = "p",
                  .required = true,
                  .description = "Path of the file on the host: "
                                 "\"/etc/ostrel/korel/koreltraced.conf\"."}});
}

std::shared_ptr<OutputSpec> LabFileRemove::GetOutputSpecInternal() {
  return Answers(MetaBool::New());
}

void LabFileRemove::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    ChangeLab(
        [&](Store& store) { RemoveFile(store, CurrentHost(store), input->GetParameter("path")); });
    Succeed(output);
  });
}

}  // namespace lab
