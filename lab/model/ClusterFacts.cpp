#include "lab/model/ClusterFacts.h"

#include <algorithm>

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/Clusters.h"
#include "lab/model/HostState.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelClusterInfoDetailed;
using Tovrin::Korel::KorelNodeType;

/// Those in which data hosts lie, by name.
std::vector<std::string> DataFaultDomains(Store& store, std::int64_t clusterId) {
  auto domains = Texts(store,
                       "SELECT DISTINCT coalesce(h.faultDomain, h.name) FROM memberships m "
                       "JOIN hosts h ON h.id = m.host WHERE m.cluster = ? AND m.nodeType = 0",
                       clusterId);
  std::sort(domains.begin(), domains.end());
  return domains;
}

/// Gives the column the value; a change of it is noted.
template <typename Value>
void SetFact(Store& store, std::int64_t clusterId, const std::string& column, const Value& value) {
  const std::string sql =
      "UPDATE clusters SET " + column + " = ?1 WHERE id = ?2 AND " + column + " <> ?1";
  if (Execute(store, sql.c_str(), value, clusterId) > 0) NoteChange(store, clusterId);
}

std::string RoleOf(const std::vector<ClusterMember>& members, const Membership& own,
                   const std::string& hostName) {
  if (own.nodeType == KorelNodeType::Witness) return "WITNESS";
  if (own.isClient) return "AGENT";
  int dataHosts = 0;
  for (const ClusterMember& member : members) {
    if (!member.isActive || member.nodeType != KorelNodeType::Normal) continue;
    if (member.hostName == hostName) return dataHosts == 0 ? "MASTER" : "BACKUP";
    if (++dataHosts == 2) break;
  }
  return "AGENT";
}

/// What keeps the host from doing its part, and its cluster from being whole.
std::string HealthOf(Store& store, const Host& host, const std::vector<ClusterMember>& members) {
  std::vector<std::string> causes;
  const auto claimed = [&](const char* condition) {
    const std::string sql = Tovrin::Misc::StrCat(
        "SELECT 1 FROM claims c JOIN devices d ON d.id = c.device WHERE d.host = ? AND ",
        condition);
    return Exists(store, sql.c_str(), host.id);
  };
  if (claimed("NOT d.isHealthy")) causes.emplace_back("DISK UNHEALTHY");
  if (claimed("NOT c.isMounted")) causes.emplace_back("DISK UNMOUNTED");
  if (MaintenanceState(store, host) != "OFF") causes.emplace_back("IN MAINTENANCE");
  const bool isWhole = std::all_of(members.begin(), members.end(),
                                   [](const ClusterMember& member) { return member.isActive; });
  if (!isWhole) causes.emplace_back("MEMBERS ABSENT");
  return causes.empty() ? "HEALTHY" : Joined(causes, ", ");
}

/// Which host is the cluster's witness, or how one becomes it.
std::string WitnessText(Store& store, std::int64_t clusterId) {
  const auto names = Texts(store,
                           "SELECT h.name FROM memberships m JOIN hosts h ON h.id = m.host "
                           "WHERE m.cluster = ? AND m.nodeType = 1",
                           clusterId);
  if (!names.empty()) return ", host " + Quoted(names.front());
  return "; 'korel cluster join --witness-node' on another host makes it that";
}

std::vector<std::string> AllQuoted(const std::vector<std::string>& names) {
  constexpr std::size_t kMostNames = 20;
  std::vector<std::string> quoted;
  for (const std::string& name : names) {
    quoted.push_back(quoted.size() < kMostNames ? Quoted(name) : "...");
    if (quoted.size() > kMostNames) break;
  }
  return quoted;
}

}  // namespace

void NoteChange(Store& store, std::int64_t clusterId) {
  Execute(store,
          "UPDATE clusters SET generation = generation + 1, changedAt = unixepoch() WHERE id = ?",
          clusterId);
}

Tovrin::Korel::KorelConfigGeneration ConfigGeneration(Store& store, std::int64_t clusterId) {
  Query row(store, "SELECT generation, changedAt FROM clusters WHERE id = ?", clusterId);
  row.Next();
  return {row.Number(0), row.IsNull(1) ? "" : LocalTime(row.Number(1))};
}

bool IsStretched(Store& store, std::int64_t clusterId) {
  if (!Exists(store, "SELECT 1 FROM memberships WHERE cluster = ? AND nodeType = 1", clusterId)) {
    return false;
  }
  const std::size_t domains = DataFaultDomains(store, clusterId).size();
  return domains == 2 || domains == 0;
}

bool IsInStretchedCluster(Store& store, const Host& host) {
  const auto memberships = ActiveMemberships(store, host);
  return std::any_of(memberships.begin(), memberships.end(), [&](const Membership& membership) {
    return IsStretched(store, membership.clusterId);
  });
}

void CheckPreferredFaultDomain(Store& store, std::int64_t clusterId, const std::string& name) {
  if (name.empty()) {
    Fail("a witness must name its preferred fault domain, by --witness-preferred-fault-domain");
  }
  CheckFaultDomainName(name);
  const auto domains = DataFaultDomains(store, clusterId);
  if (domains.empty() || std::find(domains.begin(), domains.end(), name) != domains.end()) return;
  Fail("no data host of the cluster lies in fault domain ", Quoted(name), "; they lie in ",
       Joined(AllQuoted(domains), ", "));
}

std::string PreferredFaultDomainOf(Store& store, std::int64_t clusterId) {
  const auto name =
      Texts(store, "SELECT preferredFaultDomain FROM clusters WHERE id = ?", clusterId).front();
  const auto domains = DataFaultDomains(store, clusterId);
  if (domains.empty() || std::find(domains.begin(), domains.end(), name) != domains.end()) {
    return name;
  }
  return "";
}

std::string PreferredFaultDomain(Store& store, const Host& host, const std::string& clusterUuid) {
  return PreferredFaultDomainOf(store, RequireMember(store, host, clusterUuid).clusterId);
}

void SetPreferredFaultDomain(Store& store, const Host& host, const std::string& name,
                             const std::string& clusterUuid) {
  const Membership own = RequireMember(store, host, clusterUuid);
  if (own.nodeType != KorelNodeType::Witness) {
    Fail("the preferred fault domain of cluster ", own.clusterUuid, " is set on its witness",
         WitnessText(store, own.clusterId));
  }
  CheckPreferredFaultDomain(store, own.clusterId, name);
  SetFact(store, own.clusterId, "preferredFaultDomain", name);
}

KorelClusterInfoDetailed DirectoryInfo(Store& store, const Host& host,
                                       const std::string& clusterUuid) {
  const Membership own = RequireMember(store, host, clusterUuid);
  const auto members = MembersOf(store, own.clusterId);
  KorelClusterInfoDetailed info;
  info.clusterUuid = own.clusterUuid;
  info.nodeRole = RoleOf(members, own, host.name);
  info.nodeHealth = HealthOf(store, host, members);
  for (const ClusterMember& member : members) {
    if (member.isActive) info.memberUuids.push_back(member.nodeUuid);
  }
  info.configGeneration = ConfigGeneration(store, own.clusterId);
  return info;
}

Encryption EncryptionOf(Store& store, const std::string& clusterUuid) {
  Query row(store, "SELECT isEncrypted, rekeyMinutes FROM clusters WHERE uuid = ?",
            CanonicalUuid(clusterUuid));
  if (!row.Next()) return {};
  return {row.Flag(0), row.Number(1)};
}

std::int64_t RekeyInterval(Store& store, const Host& host, const std::string& clusterUuid) {
  return EncryptionOf(store, RequireMember(store, host, clusterUuid).clusterUuid).rekeyMinutes;
}

void SetEncryption(Store& store, const Host& host, const std::string& clusterUuid, bool isEnabled,
                   const std::string& state) {
  const Membership own = RequireMember(store, host, clusterUuid);
  if (state != "SETTLED") Fail("the state of encryption must be SETTLED, got ", Quoted(state));
  SetFact(store, own.clusterId, "isEncrypted", isEnabled);
}

void SetRekeyInterval(Store& store, const Host& host, const std::string& clusterUuid,
                      std::int64_t minutes) {
  const Membership own = RequireMember(store, host, clusterUuid);
  CheckRange("the rekey interval in minutes", minutes, 30, 10080);
  SetFact(store, own.clusterId, "rekeyMinutes", minutes);
}

}  // namespace lab
