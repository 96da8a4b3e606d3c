#include "korel/network/InterfaceRemoval.h"

namespace OstrelCli::KorelNamespace {

std::shared_ptr<InputSpec> RemovalInputs() {
  return Inputs({{.name = "interface-name",
                  .shortName = "i",
                  .required = true,
                  .description = "Interface name."},
                 {.name = "force",
                  .shortName = "f",
                  .type = ParameterType::Flag,
                  .description = "Notify Korel subsystem of removal, even if not configured."}});
}

void RemoveInterface(const InputPtr& input, const OutputPtr& output) {
  const bool done = Attempt(output, [&] {
    const HostControl host;
    for (const char* trafficType : {kTrafficTypeKorel, kTrafficTypeWitness}) {
      host->RemoveHsknic(input->GetParameter("interface-name"), input->IsFlagSet("force"),
                         trafficType);
    }
    Succeed(output);
  });
  if (!done) AnswerFalse(output);
}

}  // namespace OstrelCli::KorelNamespace
