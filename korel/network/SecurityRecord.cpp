#include "korel/network/SecurityRecord.h"

#include <algorithm>

namespace OstrelCli::KorelNamespace {

std::shared_ptr<MetaStruct> SecurityRecord(const char* typeName) {
  return Structure(typeName, {{"Sub-Cluster UUID", MetaType::String},
                              {"Data-in-Transit Encryption status", MetaType::Bool},
                              {"Rekey Interval (in minutes)", MetaType::Int}});
}

void FillSecurityRecord(MetaStruct& record, const HostControl& host,
                        const std::string& clusterUuid) {
  record.SetField("Sub-Cluster UUID", clusterUuid);
  record.SetField("Data-in-Transit Encryption status",
                  host->IsDataInTransitEncryptionEnabled(clusterUuid, true));
  record.SetField("Rekey Interval (in minutes)", host->GetRekeyInterval(clusterUuid, true));
}

bool IsJoined(const HostControl& host, const std::string& clusterUuid) {
  const auto uuids = host->GetJoinedClusterUuids();
  return std::find(uuids.begin(), uuids.end(), clusterUuid) != uuids.end();
}

std::string UnknownCluster(const std::string& clusterUuid) {
  return "Unable to find subcluster UUID: " + clusterUuid;
}

}  // namespace OstrelCli::KorelNamespace
