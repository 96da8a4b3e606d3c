#include "korel/cluster/ClusterInformation.h"

#include "platform/hostctl/Optional.h"

namespace OstrelCli::KorelNamespace {
namespace {

const char* NodeTypeName(KorelNodeType type) {
  switch (type) {
    case KorelNodeType::Normal:
      return "NORMAL";
    case KorelNodeType::Witness:
      return "WITNESS";
    case KorelNodeType::Metadata:
      return "METADATA";
  }
  return "UNKNOWN";
}

std::shared_ptr<MetaList> ListOfTexts(const std::vector<std::string>& texts) {
  auto list = MetaList::New(MetaType::String);
  for (const std::string& text : texts) list->Add(text);
  return list;
}

}  // namespace

std::shared_ptr<MetaStruct> ClusterInformation(const char* typeName) {
  return Structure(typeName, {{"Enabled", MetaType::Bool},
                              {"Current Local Time", MetaType::String},
                              {"Node UUID", MetaType::String},
                              {"Node Type", MetaType::String},
                              {"Node Role", MetaType::String},
                              {"Node Health", MetaType::String},
                              {"Fault Domain", MetaType::String},
                              {"Maintenance Mode", MetaType::String},
                              {"Sub-Cluster UUID", MetaType::String},
                              {"Member Count", MetaType::Int},
                              {"Member UUIDs", MetaType::List},
                              {"Unicast Mode", MetaType::Bool},
                              {"Data-in-Transit Encryption", MetaType::Bool},
                              {"Configuration Generation", MetaType::Int},
                              {"Configuration Time", MetaType::String},
                              {"Client Mode", MetaType::Bool},
                              {"Korel Max", MetaType::Bool},
                              {"Sub-Cluster Count", MetaType::Int},
                              {"Inactive Sub-Cluster UUIDs", MetaType::List},
                              {"Restored By", MetaType::String}});
}

void FillHost(MetaStruct& information, const HostControl& host, std::size_t count) {
  const auto state = host->GetClusterInfo(true);
  information.SetField("Enabled", state->enabled);
  information.SetField("Current Local Time", KorelUtil::GetFormattedSystemDateTime());
  information.SetField("Node UUID", state->nodeUuid);
  information.SetField("Fault Domain", host->GetFaultDomainName());
  information.SetField("Maintenance Mode", state->maintenanceState);
  information.SetField("Client Mode", host->IsClientModeEnabled());
  information.SetField("Sub-Cluster Count", static_cast<std::int64_t>(count));
  if (Tovrin::Korel::IsKorelMaxEnabled != nullptr) {
    information.SetField("Korel Max", Tovrin::Korel::IsKorelMaxEnabled(*host));
  }
  if (Tovrin::Korel::GetInactiveClusterUuids == nullptr) return;
  const auto inactive = Tovrin::Korel::GetInactiveClusterUuids(*host);
  information.SetField("Inactive Sub-Cluster UUIDs", ListOfTexts(inactive));
  if (!inactive.empty()) information.SetField("Restored By", "korel cluster restore");
}

void FillCluster(MetaStruct& information, const HostControl& host, const std::string& clusterUuid) {
  Tovrin::Korel::KorelClusterInfoDetailed cluster;
  KorelUtil::GetInfoFromHXDS(clusterUuid, cluster);
  bool isUnicast = false;
  KorelUtil::GetUnicastModeForCluster(isUnicast, clusterUuid);

  information.SetField("Node Type", NodeTypeName(KorelUtil::GetNodeType()));
  information.SetField("Node Role", cluster.nodeRole);
  information.SetField("Node Health", cluster.nodeHealth);
  information.SetField("Sub-Cluster UUID", clusterUuid);
  information.SetField("Member Count", static_cast<std::int64_t>(cluster.memberUuids.size()));
  information.SetField("Member UUIDs", ListOfTexts(cluster.memberUuids));
  information.SetField("Unicast Mode", isUnicast);
  information.SetField("Data-in-Transit Encryption",
                       host->IsDataInTransitEncryptionEnabled(clusterUuid, true));
  information.SetField("Configuration Generation", cluster.configGeneration.number);
  information.SetField("Configuration Time", cluster.configGeneration.time);
}

}  // namespace OstrelCli::KorelNamespace
