#include "korel/resync/Commands.h"

namespace OstrelCli::KorelNamespace {

ResyncBandwidthGet::ResyncBandwidthGet() {
  SetDescription(
      "Get information about Korel resync bandwidth in Mbps for the disk group with the heaviest resync workload.");
  SetDefaultOutputFormatter("simple");
  SetDefaultOutputParameter("units:ResyncBandwidth.Rate", "Mbps");
}

std::shared_ptr<MetaStruct> ResyncBandwidthGet::GetOutputStructure() {
  return Structure("ResyncBandwidth", {{"Rate", MetaType::Int}});
}

std::shared_ptr<OutputSpec> ResyncBandwidthGet::GetOutputSpecInternal() {
  return Answers(GetOutputStructure());
}

void ResyncBandwidthGet::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
    const auto answer = GetOutputStructure();
    const HostControl host;
    if (host->IsClientModeEnabled()) {
      return Refuse(output, "Resync bandwidth is not supported with client mode");
    }
    answer->SetField("Rate", MetaInt::New(host->GetResyncBandwidth()));
    output->SetRootObject(answer);
  });
}

}  // namespace OstrelCli::KorelNamespace
