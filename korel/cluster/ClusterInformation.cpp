#include "korel/cluster/ClusterInformation.h"

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
                              {"Configuration Time", MetaType::String}});
}

void FillHost(MetaStruct& information, bool enabled) {
  information.SetField("Enabled", enabled);
  information.SetField("Current Local Time", KorelUtil::GetFormattedSystemDateTime());
}

void FillCluster(MetaStruct& information, const HostControl& host, const std::string& clusterUuid) {
  const auto state = host->GetClusterInfo(true);
  Tovrin::Korel::KorelClusterInfoDetailed cluster;
  KorelUtil::GetInfoFromHXDS(clusterUuid, cluster);
  bool isUnicast = false;
  KorelUtil::GetUnicastModeForCluster(isUnicast, clusterUuid);
  const auto members = MetaList::New(MetaType::String);
  for (const std::string& member : cluster.memberUuids) members->Add(member);

  information.SetField("Node UUID", state->nodeUuid);
  information.SetField("Node Type", NodeTypeName(KorelUtil::GetNodeType()));
  information.SetField("Node Role", cluster.nodeRole);
  information.SetField("Node Health", cluster.nodeHealth);
  information.SetField("Fault Domain", host->GetFaultDomainName());
  information.SetField("Maintenance Mode", state->maintenanceState);
  information.SetField("Sub-Cluster UUID", clusterUuid);
  information.SetField("Member Count", static_cast<std::int64_t>(cluster.memberUuids.size()));
  information.SetField("Member UUIDs", members);
  information.SetField("Unicast Mode", isUnicast);
  information.SetField("Data-in-Transit Encryption",
                       host->IsDataInTransitEncryptionEnabled(clusterUuid, true));
  information.SetField("Configuration Generation", cluster.configGeneration.number);
  information.SetField("Configuration Time", cluster.configGeneration.time);
}

}  // namespace OstrelCli::KorelNamespace
