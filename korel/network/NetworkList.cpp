#include "korel/network/Commands.h"

namespace OstrelCli::KorelNamespace {
namespace {

using Tovrin::Korel::KorelHskNicConfig2;
using Tovrin::Korel::KorelIpAddress;

constexpr int kKeyExchangePort = 12443;

/// The address by its own family, whichever slot it stands in.
std::string Text(const KorelIpAddress& group) {
  return group.isV6 ? group.v6.GetStringAddress() : group.v4.GetStringAddress();
}

std::string TrafficTypes(const KorelHskNicConfig2& config) {
  std::vector<std::string> types;
  config.GetTrafficTypes(types);
  std::string joined;
  for (const std::string& type : types) {
    if (!joined.empty()) joined += ", ";
    joined += type;
  }
  return joined;
}

void Fill(MetaStruct& row, const KorelHskNicConfig2& config, bool encryption) {
  row.SetField("HskNic Name", config.GetHsknicName());
  row.SetField("IP Protocol", "IP");
  row.SetField("Interface UUID", config.GetIfaceUuid());
  row.SetField("Agent Group Multicast Address", Text(config.GetAgentMulticastGroup()));
  row.SetField("Agent Group IPv6 Multicast Address", Text(config.GetAgentV6MulticastGroup()));
  row.SetField("Agent Group Multicast Port", config.GetAgentMulticastPort());
  row.SetField("Master Group Multicast Address", Text(config.GetPrimaryMulticastGroup()));
  row.SetField("Master Group IPv6 Multicast Address", Text(config.GetPrimaryV6MulticastGroup()));
  row.SetField("Master Group Multicast Port", config.GetPrimaryMulticastPort());
  row.SetField("Host Unicast Channel Bound Port", config.GetHostUnicastPort());
  if (encryption) {
    row.SetField("Data-in-Transit Encryption Key Exchange Port", kKeyExchangePort);
  }
  row.SetField("Multicast TTL", config.GetMulticastTTL());
  row.SetField("Traffic Type", TrafficTypes(config));
}

}  // namespace

NetworkList::NetworkList() {
  SetDescription("List the network configuration currently in use by Korel.");
  Show(*this, *GetOutputStructure(), "simple", "Interface");
}

std::shared_ptr<MetaStruct> NetworkList::GetOutputStructure() {
  return Structure("KorelNetworkList",
                   {{"HskNic Name", MetaType::String},
                    {"IP Protocol", MetaType::String},
                    {"Interface UUID", MetaType::String},
                    {"Agent Group Multicast Address", MetaType::String},
                    {"Agent Group IPv6 Multicast Address", MetaType::String},
                    {"Agent Group Multicast Port", MetaType::Int},
                    {"Master Group Multicast Address", MetaType::String},
                    {"Master Group IPv6 Multicast Address", MetaType::String},
                    {"Master Group Multicast Port", MetaType::Int},
                    {"Host Unicast Channel Bound Port", MetaType::Int},
                    {"Data-in-Transit Encryption Key Exchange Port", MetaType::Int},
                    {"Multicast TTL", MetaType::Int},
                    {"Traffic Type", MetaType::String}});
}

std::shared_ptr<OutputSpec> NetworkList::GetOutputSpecInternal() {
  return Answers(ListOf(GetOutputStructure()));
}

void NetworkList::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  const auto list = ListOf(GetOutputStructure());
  Attempt(output, [&] {
    const HostControl host;
    const auto configs = host->GetHsknicConfigs();
    const bool encryption = host->IsDataInTransitEncryptionEnabled(host->GetClusterUuid(), true);
    for (const auto& config : configs) {
      const auto row = GetOutputStructure();
      Fill(*row, *config, encryption);
      list->Add(row);
    }
  });
  // What was found stands beside the error.
  output->SetRootObject(list);
}

}  // namespace OstrelCli::KorelNamespace
