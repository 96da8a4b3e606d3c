#include "lab/model/NetworkConfig.h"

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelHskNicConfig2;
using Tovrin::Korel::KorelIpAddress;
using Tovrin::Network::Ipv4Address;
using Tovrin::Network::Ipv6Address;

/// The group's address in the one form of its family.
std::string CheckedGroup(const char* what, const KorelIpAddress& group, bool isV6) {
  const char* family = isV6 ? "IPv6" : "IPv4";
  if (group.isV6 != isV6) Fail("the ", family, " ", what, " group is of the other family");
  std::string address = isV6 ? group.v6.GetStringAddress() : group.v4.GetStringAddress();
  if (!(isV6 ? group.v6.IsMulticast() : group.v4.IsMulticast())) {
    Fail("the ", family, " ", what, " group ", address, " is no multicast address");
  }
  return address;
}

void CheckNumbers(const KorelHskNicConfig2& config) {
  constexpr std::int64_t kMaxPort = 65535;
  CheckRange("the agent multicast port", config.GetAgentMulticastPort(), 1, kMaxPort);
  CheckRange("the master multicast port", config.GetPrimaryMulticastPort(), 1, kMaxPort);
  CheckRange("the host unicast port", config.GetHostUnicastPort(), 1, kMaxPort);
  CheckRange("the multicast time-to-live", config.GetMulticastTTL(), 1, 255);
}

/// The column that says whether an interface carries such traffic.
std::string TrafficColumn(const std::string& trafficType) {
  if (trafficType == "korel") return "carriesKorel";
  if (trafficType == "witness") return "carriesWitness";
  Fail(Quoted(trafficType), " is no traffic type; the types are korel and witness");
}

KorelIpAddress V4(const std::string& text) { return {false, Ipv4Address(text), {}, text}; }
KorelIpAddress V6(const std::string& text) { return {true, {}, Ipv6Address(text), text}; }

bool IsConfigured(Store& store, const Host& host, const std::string& name,
                  const std::string& condition) {
  const std::string sql =
      "SELECT 1 FROM networkConfigs WHERE host = ? AND interface = ? AND " + condition;
  return Exists(store, sql.c_str(), host.id, name);
}

}  // namespace

void CheckHasInterface(Store& store, const Host& host, const std::string& name) {
  if (Exists(store, "SELECT 1 FROM interfaces WHERE host = ? AND name = ?", host.id, name)) return;
  const auto names =
      Texts(store, "SELECT name FROM interfaces WHERE host = ? ORDER BY position, name", host.id);
  Fail("the host has no interface ", Quoted(name),
       names.empty() ? ", nor any other; 'autocli lab interface add' puts one in"
                     : "; it has " + Joined(names, ", "));
}

std::vector<Interface> InterfacesOf(Store& store, const Host& host) {
  std::vector<Interface> interfaces;
  for (const Row& row :
       Query(store,
             "SELECT i.name, isActive, isActive AND carriesKorel, isActive AND carriesWitness "
             "FROM interfaces i LEFT JOIN networkConfigs c ON c.host = i.host AND "
             "c.interface = i.name WHERE i.host = ? ORDER BY i.position, i.name",
             host.id)) {
    Interface& found =
        interfaces.emplace_back(Interface{row.Text(0), {}, row.Flag(1), !row.IsNull(1)});
    if (row.Flag(2)) found.trafficTypes.emplace_back("korel");
    if (row.Flag(3)) found.trafficTypes.emplace_back("witness");
  }
  return interfaces;
}

bool SetInterfaceConfig(Store& store, const Host& host, const KorelHskNicConfig2& config) {
  CheckHasInterface(store, host, config.GetHsknicName());
  const std::string agentV4 = CheckedGroup("agent", config.GetAgentMulticastGroup(), false);
  const std::string agentV6 = CheckedGroup("agent", config.GetAgentV6MulticastGroup(), true);
  const std::string masterV4 = CheckedGroup("master", config.GetPrimaryMulticastGroup(), false);
  const std::string masterV6 = CheckedGroup("master", config.GetPrimaryV6MulticastGroup(), true);
  CheckNumbers(config);
  if (!config.korelTraffic && !config.witnessTraffic) {
    Fail("interface ", Quoted(config.GetHsknicName()), " must carry korel or witness traffic");
  }
  const bool replaces = IsConfigured(store, host, config.GetHsknicName(), "NOT isActive");
  Execute(
      store, "INSERT OR REPLACE INTO networkConfigs VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 1)",
      host.id, config.GetHsknicName(), agentV4, agentV6, masterV4, masterV6,
      config.GetAgentMulticastPort(), config.GetPrimaryMulticastPort(), config.GetHostUnicastPort(),
      config.GetMulticastTTL(), config.korelTraffic, config.witnessTraffic);
  return replaces;
}

std::vector<std::unique_ptr<KorelHskNicConfig2>> InterfaceConfigs(Store& store, const Host& host) {
  std::vector<std::unique_ptr<KorelHskNicConfig2>> configs;
  for (const Row& row :
       Query(store,
             "SELECT interface, agentV4, agentV6, masterV4, masterV6, agentPort, masterPort, "
             "unicastPort, ttl, carriesKorel, carriesWitness FROM networkConfigs c "
             "JOIN interfaces i ON i.host = c.host AND i.name = c.interface "
             "WHERE c.host = ? AND isActive ORDER BY i.position, i.name",
             host.id)) {
    configs.push_back(std::make_unique<KorelHskNicConfig2>(
        row.Text(0), V4(row.Text(1)), V6(row.Text(2)), V4(row.Text(3)), V6(row.Text(4)),
        row.Number(5), row.Number(6), row.Number(7), row.Number(8), row.Flag(9), row.Flag(10), ""));
    configs.back()->SetIfaceUuid(DerivedUuid("interface " + host.name + " " + row.Text(0)));
  }
  return configs;
}

bool IsInterfaceConfigured(Store& store, const Host& host, const std::string& name,
                           const std::string& trafficType) {
  return IsConfigured(store, host, name, "isActive AND " + TrafficColumn(trafficType));
}

void RemoveTraffic(Store& store, const Host& host, const std::string& name, bool force,
                   const std::string& trafficType) {
  const std::string column = TrafficColumn(trafficType);
  if (!force && !IsConfigured(store, host, name, "isActive")) {
    CheckHasInterface(store, host, name);
    // A whole removal takes "korel" off first, and with it goes an interface that carries nothing
    // else: that "witness" then finds none is no fault.
    if (column == "carriesWitness") return;
    if (IsConfigured(store, host, name, "NOT isActive")) {
      Fail("interface ", Quoted(name), " is in the persisted Korel network configuration and not ",
           "active; 'korel network restore' restores it first, or --force removes it from there");
    }
    Fail("interface ", Quoted(name), " is not in the Korel network configuration; ",
         "'korel network list' shows what is");
  }
  const std::string sql =
      "UPDATE networkConfigs SET " + column + " = 0 WHERE host = ? AND interface = ?";
  Execute(store, sql.c_str(), host.id, name);
  Execute(store,
          "DELETE FROM networkConfigs WHERE host = ? AND NOT carriesKorel AND NOT carriesWitness",
          host.id);
}

void ClearNetworkConfig(Store& store, const Host& host) {
  Execute(store, "UPDATE networkConfigs SET isActive = 0 WHERE host = ?", host.id);
}

void RestoreNetworkConfig(Store& store, const Host& host) {
  Execute(store, "UPDATE networkConfigs SET isActive = 1 WHERE host = ?", host.id);
}

}  // namespace lab
