#include "korel/storage/Commands.h"

namespace OstrelCli::KorelNamespace {

StorageAutoModeSet::StorageAutoModeSet() { SetDescription("Configure storage auto claim mode"); }

std::shared_ptr<InputSpec> StorageAutoModeSet::GetInputSpecInternal() {
  return Inputs(
      {{.name = "enabled",
        .type = ParameterType::Bool,
        .required = true,
        .description =
            "Changing this value to true will result in enabling auto disk claim mode. Disks will be claimed by the Korel service in next storage event, e.g.: adapter rescan and disk hot-plug. Set to false to disable storage auto claim mode."}});
}

void StorageAutoModeSet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  if (input->GetParameterBool("enabled")) {
    Refuse(
        output,
        "Korel storage auto claim mode setting is not supported. Since Korel 7.0 U1, auto claim modeis always disabled.");
  }
  // Also beside the error: scripts from before the mode went away keep running.
  Succeed(output);
}

}  // namespace OstrelCli::KorelNamespace
