#include "lab/model/ClusterFacts.h"

#include <algorithm>

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/Clusters.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelClusterInfoDetailed;
using Tovrin::Korel::KorelNodeType;

/// Those in which data hosts lie, by name; of more than two just three, which says as much.
std::vector<std::string> DataFaultDomains(Store& store, std::int64_t clusterId) {
  auto domains = Texts(store,
                       "SELECT DISTINCT coalesce(h.faultDomain, h.name) FROM memberships m "
                       "JOIN hosts h ON h.id = m.host WHERE m.cluster = ? AND m.nodeType = 0 "
                       "LIMIT 3",
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
  if (name.empty()) Fail("a witness must name its preferred fault domain");
  CheckFaultDomainName(name);
  const auto domains = DataFaultDomains(store, clusterId);
  if (domains.size() == 2 && std::find(domains.begin(), domains.end(), name) == domains.end()) {
    Fail(Quoted(name), " is no fault domain of the cluster's data hosts; theirs are ",
         Quoted(domains[0]), " and ", Quoted(domains[1]));
  }
}

std::string PreferredFaultDomain(Store& store, const Host& host, const std::string& clusterUuid) {
  const Membership own = RequireMember(store, host, clusterUuid);
  return Texts(store, "SELECT preferredFaultDomain FROM clusters WHERE id = ?", own.clusterId)
      .front();
}

void SetPreferredFaultDomain(Store& store, const Host& host, const std::string& name,
                             const std::string& clusterUuid) {
  const Membership own = RequireMember(store, host, clusterUuid);
  if (own.nodeType != KorelNodeType::Witness) {
    Fail("the preferred fault domain of cluster ", own.clusterUuid, " is set on its witness");
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
  info.nodeHealth = "HEALTHY";
  for (const ClusterMember& member : members) {
    if (member.isActive) info.memberUuids.push_back(member.nodeUuid);
  }
  info.configGeneration = ConfigGeneration(store, own.clusterId);
  return info;
}

Encryption EncryptionOf(Store& store, const std::string& clusterUuid) {
  const std::string uuid = CanonicalUuid(clusterUuid);
  if (uuid == kZeroUuid) return {};
  Query row(store, "SELECT isEncrypted, rekeyMinutes FROM clusters WHERE uuid = ?", uuid);
  if (!row.Next()) Fail("there is no cluster ", clusterUuid);
  return {row.Flag(0), row.Number(1)};
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
