#include "korel/resync/Commands.h"

namespace OstrelCli::KorelNamespace {

ResyncThrottleGet::ResyncThrottleGet() {
  SetDescription("Get information about Korel resync throttling");
  SetDefaultOutputFormatter("simple");
  SetDefaultOutputParameter("units:ResyncThrottle.Level", "Mbps");
}

std::shared_ptr<MetaStruct> ResyncThrottleGet::GetOutputStructure() const {
  return Structure("ResyncThrottle", {{"Level", MetaType::Int}});
}

std::shared_ptr<OutputSpec> ResyncThrottleGet::GetOutputSpecInternal() {
  return Answers(GetOutputStructure());
}

void ResyncThrottleGet::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
    const auto answer = GetOutputStructure();
    const HostControl host;
    if (host->IsClientModeEnabled()) {
      return Refuse(output, "Resync throttling is not supported with client mode");
    }
    answer->SetField("Level", MetaInt::New(host->GetResyncThrottle()));
    output->SetRootObject(answer);
  });
}

}  // namespace OstrelCli::KorelNamespace
