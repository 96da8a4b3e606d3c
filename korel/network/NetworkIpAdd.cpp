#include "korel/network/Commands.h"

namespace OstrelCli::KorelNamespace {
namespace {

using Tovrin::Korel::KorelHskNicConfig2;
using Tovrin::Korel::KorelIpAddress;
using Tovrin::Network::Ipv4Address;
using Tovrin::Network::Ipv6Address;

/// The values of one interface.
struct Settings {
  KorelIpAddress agentV4;
  KorelIpAddress agentV6;
  KorelIpAddress masterV4;
  KorelIpAddress masterV6;
  std::int64_t agentPort = 23451;
  std::int64_t masterPort = 12345;
  std::int64_t unicastPort = 12321;
  std::int64_t ttl = 5;
  bool korelTraffic = true;
  bool witnessTraffic = false;
};

KorelIpAddress V4(const std::string& text) { return {false, Ipv4Address(text), {}, text}; }

KorelIpAddress V6(const std::string& text) { return {true, {}, Ipv6Address(text), text}; }

KorelIpAddress Rebuild(const KorelIpAddress& group) {
  return group.isV6 ? V6(group.text) : V4(group.text);
}

Settings Defaults() {
  Settings settings;
  settings.agentV4 = V4(kDefaultAgentGroupV4);
  settings.agentV6 = V6(kDefaultAgentGroupV6);
  settings.masterV4 = V4(kDefaultMasterGroupV4);
  settings.masterV6 = V6(kDefaultMasterGroupV6);
  return settings;
}

/// The values that the interface has; nothing when it is not in the configuration.
std::optional<Settings> Present(const HostControl& host, const std::string& name) {
  for (const auto& config : host->GetHsknicConfigs()) {
    if (config->GetHsknicName() != name) continue;
    return Settings{.agentV4 = Rebuild(config->GetAgentMulticastGroup()),
                    .agentV6 = Rebuild(config->GetAgentV6MulticastGroup()),
                    .masterV4 = Rebuild(config->GetPrimaryMulticastGroup()),
                    .masterV6 = Rebuild(config->GetPrimaryV6MulticastGroup()),
                    .agentPort = config->GetAgentMulticastPort(),
                    .masterPort = config->GetPrimaryMulticastPort(),
                    .unicastPort = config->GetHostUnicastPort(),
                    .ttl = config->GetMulticastTTL(),
                    .korelTraffic = config->korelTraffic,
                    .witnessTraffic = config->witnessTraffic};
  }
  return std::nullopt;
}

void OverrideTraffic(const InputPtr& input, Settings& settings) {
  std::vector<std::string> types;
  input->GetParameterList("traffic-type", types);
  settings.korelTraffic = false;
  settings.witnessTraffic = false;
  for (const std::string& type : types) {
    if (type == kTrafficTypeKorel) {
      settings.korelTraffic = true;
    } else if (type == kTrafficTypeWitness) {
      settings.witnessTraffic = true;
    } else {
      throw KorelCtlException("Unknown traffic type");
    }
  }
}

/// Puts the values that were given in the place of those that are there.
void Override(const InputPtr& input, Settings& settings) {
  const auto group = [&](const char* option, KorelIpAddress (*parse)(const std::string&),
                         KorelIpAddress& value) {
    if (input->HasParameter(option)) value = parse(input->GetParameter(option));
  };
  const auto number = [&](const char* option, std::int64_t& value) {
    if (input->HasParameter(option)) value = input->GetParameterInt(option);
  };
  group("agent-mc-addr", V4, settings.agentV4);
  group("agent-v6-mc-addr", V6, settings.agentV6);
  group("master-mc-addr", V4, settings.masterV4);
  group("master-v6-mc-addr", V6, settings.masterV6);
  number("agent-mc-port", settings.agentPort);
  number("master-mc-port", settings.masterPort);
  number("host-uc-port", settings.unicastPort);
  number("multicast-ttl", settings.ttl);
  if (input->HasParameter("traffic-type")) OverrideTraffic(input, settings);
}

}  // namespace

NetworkIpAdd::NetworkIpAdd() {
  SetDescription("Add an IP interface to the Korel network configuration.");
}

std::shared_ptr<InputSpec> NetworkIpAdd::GetInputSpecInternal() { return GetInputSpecCommon(); }

std::shared_ptr<InputSpec> NetworkIpAdd::GetInputSpecCommon() {
  return Inputs(
      {{.name = "interface-name",
        .shortName = "i",
        .required = true,
        .description = "Interface name."},
       {.name = "agent-mc-addr",
        .shortName = "d",
        .description = "IPv4 multicast address for agent (also called downstream) group."},
       {.name = "agent-v6-mc-addr",
        .shortName = "D",
        .description = "IPv6 multicast address for agent (also called downstream) group."},
       {.name = "agent-mc-port",
        .shortName = "p",
        .type = ParameterType::Int,
        .description = "Multicast address port for agent (also called downstream) group."},
       {.name = "master-mc-addr",
        .shortName = "u",
        .description = "IPv4 multicast address for master (also called upstream) group."},
       {.name = "master-v6-mc-addr",
        .shortName = "U",
        .description = "IPv6 multicast address for master (also called upstream) group."},
       {.name = "master-mc-port",
        .shortName = "o",
        .type = ParameterType::Int,
        .description = "Multicast address port for master (also called upstream) group."},
       {.name = "host-uc-port",
        .shortName = "c",
        .type = ParameterType::Int,
        .description = "Unicast address port for host unicast channel."},
       {.name = "multicast-ttl",
        .shortName = "t",
        .type = ParameterType::Int,
        .description = "Time-to-live for multicast packets."},
       {.name = "traffic-type",
        .shortName = "T",
        .type = ParameterType::StringList,
        .description =
            "Network transmission type of Korel traffic through a virtual network adapter.Supported values are korel, witness. Type korel means general Korel transmission, which is used for both data and witness transmission, if there is no virtual adapter configured with witness traffic type; Type witness indicates that, Korel hsknic is used for Korel witness transmission. Once a virtual adapter is configured with witness traffic type, Korel witness data transmission will stop using virtual adpater with korel traffic type, and use first dicovered virtual adapter with witness traffic type. Multiple traffic types can be provided in format -T type1 -T type2. Default value is korel, if this option is not specified."}});
}

void NetworkIpAdd::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  ExecuteCommon(input, output, false);
}

void NetworkIpAdd::ExecuteCommon(const InputPtr& input, const OutputPtr& output, bool isSet) {
  Attempt(output, [&] {
    const HostControl host;
    const std::string name = input->GetParameter("interface-name");
    const bool isUsed = host->IsHsknicConfigured(name, kTrafficTypeKorel) ||
                        host->IsHsknicConfigured(name, kTrafficTypeWitness);
    if (isSet && !isUsed) {
      return Refuse(
          output,
          "This Hesket network interface is not in use. Can't set/reconfigure. If you want to add, use 'add' command.");
    }
    if (!isSet && isUsed) {
      return Refuse(
          output,
          "This Hesket network interface is already in use. Can't add again. If you want to reconfigure, use 'set' command.");
    }
    std::optional<Settings> settings = isSet ? Present(host, name) : Defaults();
    if (!settings) return Refuse(output, "This Hesket network interface not found.");
    Override(input, *settings);
    host->SetHsknicConfig(KorelHskNicConfig2(
        name, settings->agentV4, settings->agentV6, settings->masterV4, settings->masterV6,
        settings->agentPort, settings->masterPort, settings->unicastPort, settings->ttl,
        settings->korelTraffic, settings->witnessTraffic, ""));
    Succeed(output);
  });
}

}  // namespace OstrelCli::KorelNamespace
