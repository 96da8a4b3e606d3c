#include "korel/resync/Commands.h"

namespace OstrelCli::KorelNamespace {

ResyncThrottleSet::ResyncThrottleSet() { SetDescription("Configure Korel resync throttling"); }

std::shared_ptr<InputSpec> ResyncThrottleSet::GetInputSpecInternal() {
  return Inputs(
      {{.name = "level",
        .type = ParameterType::Int,
        .required = true,
        .constraint = IntRange(0, 512),
        .description = "Set Korel resync throttle level in Mbps (%ENUM%, 0 means no throttling)"}});
}

void ResyncThrottleSet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
    const std::int64_t level = input->GetParameterInt("level");
    const HostControl host;
    if (host->IsClientModeEnabled()) {
      return Refuse(output, "Resync throttling is not supported with client mode");
    }
    host->SetResyncThrottle(level);
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
