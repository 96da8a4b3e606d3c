#include "korel/faultdomain/Commands.h"

namespace OstrelCli::KorelNamespace {

FaultDomainGet::FaultDomainGet() {
  SetDescription("Get the fault domain name for this host.");
  SetDefaultOutputFormatter("simple");
}

std::shared_ptr<MetaStruct> FaultDomainGet::GetOutputStructure() {
  return Structure("FaultDomain",
                   {{"faultDomainName", MetaType::String}, {"faultDomainId", MetaType::String}});
}

std::shared_ptr<OutputSpec> FaultDomainGet::GetOutputSpecInternal() {
  return Answers(GetOutputStructure());
}

void FaultDomainGet::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, "Unable to get fault domain name: ", [&] {
    const HostControl host;
    const auto answer = GetOutputStructure();
    answer->SetField("faultDomainName", host->GetFaultDomainName());
    const bool enabled = host->GetClusterInfo(true)->enabled;
    answer->SetField("faultDomainId", enabled ? KorelUtil::GetFaultDomainId() : "");
    output->SetRootObject(answer);
  });
}

}  // namespace OstrelCli::KorelNamespace
