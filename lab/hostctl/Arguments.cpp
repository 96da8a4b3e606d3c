#include "lab/hostctl/Arguments.h"

#include "lab/conversions/Uuids.h"

namespace lab {

Json Logged(const Tovrin::Korel::Uuid& uuid) { return UuidText(uuid); }

Json Logged(const Tovrin::Korel::KorelDatastore& datastore) {
  return {{"uuid", datastore.GetUuid()},
          {"name", datastore.GetName()},
          {"clusterUuid", datastore.GetClusterUuid()},
          {"isDefault", datastore.IsDefault()}};
}

Json Logged(const Tovrin::Korel::KorelHskNicConfig2& config) {
  Json types = Json::array();
  std::vector<std::string> names;
  config.GetTrafficTypes(names);
  for (const std::string& name : names) types.push_back(name);
  return {{"name", config.GetHsknicName()},
          {"agentGroup", config.GetAgentMulticastGroup().text},
          {"agentV6Group", config.GetAgentV6MulticastGroup().text},
          {"masterGroup", config.GetPrimaryMulticastGroup().text},
          {"masterV6Group", config.GetPrimaryV6MulticastGroup().text},
          {"agentPort", config.GetAgentMulticastPort()},
          {"masterPort", config.GetPrimaryMulticastPort()},
          {"hostUnicastPort", config.GetHostUnicastPort()},
          {"multicastTtl", config.GetMulticastTTL()},
          {"trafficTypes", types},
          {"extra", config.GetExtra()}};
}

Json Logged(const Tovrin::Korel::KorelDiskList& disks) {
  Json list = Json::array();
  for (const auto& disk : disks) {
    list.push_back({{"uuid", UuidText(disk->GetUuid())}, {"name", disk->GetName()}});
  }
  return list;
}

}  // namespace lab
