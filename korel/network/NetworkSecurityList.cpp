#include "korel/network/Commands.h"
#include "korel/network/SecurityRecord.h"

namespace OstrelCli::KorelNamespace {

NetworkSecurityList::NetworkSecurityList() {
  SetDescription("List Korel network security configurations.");
  Show(*this, *GetListType(), "simple", "Network Security Information of %Sub-Cluster UUID%");
}

std::shared_ptr<MetaStruct> NetworkSecurityList::GetListType() {
  return SecurityRecord("KorelNetworkSecurityList");
}

std::shared_ptr<OutputSpec> NetworkSecurityList::GetOutputSpecInternal() {
  return Answers(ListOf(GetListType()));
}

void NetworkSecurityList::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
    const auto list = ListOf(GetListType());
    const HostControl host;
    const auto uuids = host->GetJoinedClusterUuids();
    list->Reserve(uuids.size());
    for (const std::string& uuid : uuids) {
      const auto row = GetListType();
      FillSecurityRecord(*row, host, uuid);
      list->Add(row);
    }
    output->SetRootObject(list);
  });
}

}  // namespace OstrelCli::KorelNamespace
