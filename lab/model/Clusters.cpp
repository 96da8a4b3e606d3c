#include "lab/model/Clusters.h"

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/Agents.h"
#include "lab/model/ClusterFacts.h"
#include "lab/model/Datastores.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelNodeType;

constexpr const char* kRestore = "'korel cluster restore' restores its membership";

struct ClusterRow {
  std::int64_t id;
  bool isClient;
};

std::optional<ClusterRow> FindCluster(Store& store, const std::string& uuid) {
  Query row(store, "SELECT id, isClient FROM clusters WHERE uuid = ?", uuid);
  if (!row.Next()) return std::nullopt;
  return ClusterRow{row.Number(0), row.Flag(1)};
}

/// How a host gives up a membership, which it cannot while that is not active.
std::string WayOut(const std::string& uuid, bool isActive) {
  return Tovrin::Misc::StrCat(isActive ? "" : "'korel cluster restore' and then ",
                              "'korel cluster leave --cluster-uuid ", uuid, "'");
}

/// Persisted memberships that are not active count too: a restore would bring them back.
void CheckInNoCluster(Store& store, const Host& host) {
  Query row(store,
            "SELECT uuid, isActive FROM memberships m JOIN clusters c "
            "ON c.id = m.cluster WHERE m.host = ? ORDER BY m.id",
            host.id);
  if (!row.Next()) return;
  const std::string uuid = row.Text(0);
  Fail(row.Flag(1) ? "the host is in cluster "
                   : "the host's persisted configuration has it in cluster ",
       uuid, "; it leaves that one first by ", WayOut(uuid, row.Flag(1)));
}

std::int64_t InsertCluster(Store& store, const std::string& uuid, bool isClient) {
  const auto cluster =
      Insert(store, "INSERT INTO clusters (uuid, isClient) VALUES (?, ?)", uuid, isClient);
  if (!isClient) AddDefaultDatastore(store, cluster, uuid);
  return cluster;
}

void InsertMembership(Store& store, const Host& host, std::int64_t cluster, KorelNodeType nodeType,
                      bool persist) {
  Execute(store,
          "INSERT INTO memberships (host, cluster, nodeType, isActive, isPersisted) "
          "VALUES (?, ?, ?, 1, ?)",
          host.id, cluster, static_cast<int>(nodeType), persist);
  NoteChange(store, cluster);
}

/// A witness may join further clusters as a witness; any other host is in one cluster at most.
void CheckMayJoinAs(Store& store, const Host& host, const std::string& uuid,
                    KorelNodeType nodeType) {
  const auto memberships = ActiveMemberships(store, host);
  for (const Membership& membership : memberships) {
    if (membership.clusterUuid == uuid)
      Fail("the host is in cluster ", uuid, " already; 'korel cluster get' shows it");
  }
  for (const std::string& suspended : InactiveClusterUuids(store, host)) {
    if (suspended != uuid) continue;
    Fail("the host is in cluster ", uuid, " already, though not active there; ", kRestore);
  }
  const bool isWitness =
      !memberships.empty() && memberships.front().nodeType == KorelNodeType::Witness;
  if (!isWitness) return CheckInNoCluster(store, host);
  if (nodeType != KorelNodeType::Witness) {
    Fail("the host is a witness of cluster ", memberships.front().clusterUuid,
         " and can join others only as a witness, by --witness-node");
  }
}

/// Two witnesses would leave it open which one decides.
void CheckHasNoWitness(Store& store, std::int64_t cluster) {
  Query row(store,
            "SELECT h.name, c.uuid, m.isActive FROM memberships m JOIN hosts h ON h.id = m.host "
            "JOIN clusters c ON c.id = m.cluster WHERE m.cluster = ? AND m.nodeType = 1",
            cluster);
  if (!row.Next()) return;
  Fail("cluster ", row.Text(1), " has a witness, host ", Quoted(row.Text(0)),
       "; that one leaves by ", WayOut(row.Text(1), row.Flag(2)));
}

void JoinAsWitness(Store& store, std::int64_t cluster, const std::string& preferredFaultDomain) {
  CheckHasNoWitness(store, cluster);
  CheckPreferredFaultDomain(store, cluster, preferredFaultDomain);
  Execute(store, "UPDATE clusters SET preferredFaultDomain = ? WHERE id = ?", preferredFaultDomain,
          cluster);
}

/// Without a witness nobody prefers a fault domain; without members there is no cluster, and its
/// datastores are mounted nowhere.
void NoteMemberChange(Store& store, std::int64_t cluster) {
  NoteChange(store, cluster);
  Execute(store,
          "UPDATE clusters SET preferredFaultDomain = '' WHERE id = ?1 AND NOT EXISTS "
          "(SELECT 1 FROM memberships WHERE cluster = ?1 AND nodeType = 1)",
          cluster);
  if (Exists(store, "SELECT 1 FROM memberships WHERE cluster = ?", cluster)) return;
  for (const Row& row : Query(store,
                              "SELECT DISTINCT m.cluster FROM mounts m JOIN datastores d "
                              "ON d.id = m.datastore WHERE d.cluster = ?",
                              cluster))
    NoteChange(store, row.Number(0));
  Execute(store, "DELETE FROM clusters WHERE id = ?", cluster);
}

void Depart(Store& store, const Host& host, std::int64_t cluster, const std::string& uuid) {
  Execute(store, "DELETE FROM memberships WHERE host = ? AND cluster = ?", host.id, cluster);
  DropAgentsOf(store, host, uuid);
  // The role can be switched only within a cluster.
  Execute(store,
          "UPDATE hosts SET isKorelMax = 0 WHERE id = ?1 AND NOT EXISTS "
          "(SELECT 1 FROM memberships WHERE host = ?1)",
          host.id);
  NoteMemberChange(store, cluster);
}

Cluster ReadCluster(Store& store, const Row& row) {
  return {row.Number(0), row.Text(1), row.Flag(2), PreferredFaultDomainOf(store, row.Number(0)),
          Texts(store,
                "SELECT h.name FROM memberships m JOIN hosts h ON h.id = m.host "
                "WHERE m.cluster = ? ORDER BY m.id",
                row.Number(0))};
}

/// What would make the host take part in that cluster, or in any for the UUID of all zeros.
std::string WayIn(Store& store, const Host& host, const std::string& uuid) {
  const auto suspended = InactiveClusterUuids(store, host);
  const bool isAny = uuid == kZeroUuid;
  for (const std::string& each : suspended) {
    if (isAny || each == uuid) return std::string(" now; ") + kRestore;
  }
  if (!isAny) return "; 'korel cluster list' shows those that it is in";
  return "; 'korel cluster join' or 'korel cluster new' puts it in one";
}

}  // namespace

std::vector<Membership> ActiveMemberships(Store& store, const Host& host) {
  std::vector<Membership> memberships;
  for (const Row& row :
       Query(store,
             "SELECT c.id, c.uuid, c.isClient, m.nodeType, m.isPersisted FROM memberships m "
             "JOIN clusters c ON c.id = m.cluster "
             "WHERE m.host = ? AND m.isActive ORDER BY m.id",
             host.id)) {
    memberships.push_back({row.Number(0), row.Text(1), row.Flag(2),
                           static_cast<KorelNodeType>(row.Number(3)), row.Flag(4)});
  }
  return memberships;
}

std::optional<Membership> FirstMembership(Store& store, const Host& host) {
  auto memberships = ActiveMemberships(store, host);
  if (memberships.empty()) return std::nullopt;
  return std::move(memberships.front());
}

std::vector<std::string> JoinedClusterUuids(Store& store, const Host& host) {
  std::vector<std::string> uuids;
  for (Membership& membership : ActiveMemberships(store, host)) {
    uuids.push_back(std::move(membership.clusterUuid));
  }
  return uuids;
}

std::string FirstClusterUuid(Store& store, const Host& host) {
  const auto first = FirstMembership(store, host);
  return first ? first->clusterUuid : std::string(kZeroUuid);
}

Membership RequireMember(Store& store, const Host& host, const std::string& clusterUuid) {
  const std::string uuid = CanonicalUuid(clusterUuid);
  for (Membership& membership : ActiveMemberships(store, host)) {
    if (membership.clusterUuid == uuid) return std::move(membership);
  }
  const bool isInNone = uuid == kZeroUuid && !FirstMembership(store, host);
  Fail("the host is ", isInNone ? "in no cluster" : "not in cluster " + clusterUuid,
       WayIn(store, host, uuid));
}

std::vector<std::string> InactiveClusterUuids(Store& store, const Host& host) {
  return Texts(store,
               "SELECT c.uuid FROM memberships m JOIN clusters c ON c.id = m.cluster "
               "WHERE m.host = ? AND NOT m.isActive ORDER BY m.id",
               host.id);
}

void RequireEnabled(Store& store, const Host& host) {
  const auto first = FirstMembership(store, host);
  if (!first) {
    Fail("Korel is not enabled on this host: it is in no cluster",
         WayIn(store, host, std::string(kZeroUuid)));
  }
  if (first->isClient) {
    Fail("Korel is not enabled on this host: it is in client cluster ", first->clusterUuid,
         ", which it leaves by ", WayOut(first->clusterUuid, true));
  }
}

bool IsEnabled(Store& store, const Host& host) {
  const auto first = FirstMembership(store, host);
  return first && !first->isClient;
}

bool IsClientMode(Store& store, const Host& host) {
  const auto first = FirstMembership(store, host);
  return first && first->isClient;
}

KorelNodeType NodeTypeOf(Store& store, const Host& host) {
  const auto first = FirstMembership(store, host);
  return first ? first->nodeType : KorelNodeType::Normal;
}

void CreateCluster(Store& store, const Host& host, const std::string& uuid, bool persist) {
  const std::string canonical = CanonicalNewUuid(uuid);
  CheckInNoCluster(store, host);
  if (FindCluster(store, canonical)) Fail("cluster UUID ", canonical, " is taken");
  const auto cluster = InsertCluster(store, canonical, false);
  InsertMembership(store, host, cluster, KorelNodeType::Normal, persist);
}

void JoinCluster(Store& store, const Host& host, const Tovrin::Korel::Uuid& uuid,
                 KorelNodeType nodeType, const std::string& preferredFaultDomain) {
  const std::string canonical = CanonicalNewUuid(UuidText(uuid));
  const auto found = FindCluster(store, canonical);
  if (found && found->isClient) {
    Fail("cluster ", canonical, " is a client cluster; --client-mode joins it");
  }
  CheckMayJoinAs(store, host, canonical, nodeType);
  NodeTypeName(nodeType);
  const auto cluster = found ? found->id : InsertCluster(store, canonical, false);
  if (nodeType == KorelNodeType::Witness) {
    JoinAsWitness(store, cluster, preferredFaultDomain);
  } else if (!preferredFaultDomain.empty()) {
    Fail("only a witness names a preferred fault domain, by --witness-node");
  }
  InsertMembership(store, host, cluster, nodeType, true);
}

void JoinClientCluster(Store& store, const Host& host, const std::string& uuid) {
  const std::string canonical = CanonicalNewUuid(uuid);
  CheckInNoCluster(store, host);
  const auto cluster = FindCluster(store, canonical);
  if (cluster && !cluster->isClient) {
    Fail("cluster ", canonical, " is not a client cluster; it is joined without --client-mode");
  }
  InsertMembership(store, host, cluster ? cluster->id : InsertCluster(store, canonical, true),
                   KorelNodeType::Normal, true);
}

void LeaveCluster(Store& store, const Host& host, const Tovrin::Korel::Uuid& uuid) {
  const std::string canonical = UuidText(uuid);
  const auto cluster = FindCluster(store, canonical);
  if (!cluster || !Exists(store, "SELECT 1 FROM memberships WHERE host = ? AND cluster = ?",
                          host.id, cluster->id)) {
    Fail("the host is not in cluster ", canonical, WayIn(store, host, canonical));
  }
  if (!Exists(store, "SELECT 1 FROM memberships WHERE cluster = ? AND host <> ?", cluster->id,
              host.id)) {
    CheckNoneIsMounted(store, cluster->id);
  }
  Depart(store, host, cluster->id, canonical);
}

void SuspendClusters(Store& store, const Host& host) {
  for (const Membership& membership : ActiveMemberships(store, host)) {
    if (Execute(store,
                "UPDATE memberships SET isActive = 0 WHERE host = ? AND cluster = ? "
                "AND isPersisted",
                host.id, membership.clusterId) > 0) {
      NoteChange(store, membership.clusterId);
    } else {
      Depart(store, host, membership.clusterId, membership.clusterUuid);
    }
  }
}

void RestoreClusters(Store& store, const Host& host, bool boot, bool postboot) {
  if (boot && postboot) Fail("a restore is for one stage of a boot at most");
  for (const Membership& membership : ActiveMemberships(store, host)) {
    if (!membership.isPersisted) {
      Depart(store, host, membership.clusterId, membership.clusterUuid);
    }
  }
  for (const Row& row :
       Query(store, "SELECT cluster FROM memberships WHERE host = ? AND NOT isActive", host.id))
    NoteChange(store, row.Number(0));
  Execute(store, "UPDATE memberships SET isActive = 1 WHERE host = ?", host.id);
}

const char* NodeTypeName(KorelNodeType nodeType) {
  switch (nodeType) {
    case KorelNodeType::Normal:
      return "normal";
    case KorelNodeType::Witness:
      return "witness";
    case KorelNodeType::Metadata:
      return "metadata";
  }
  Fail("there is no node type ", std::to_string(static_cast<int>(nodeType)));
}

void SetNodeType(Store& store, const Host& host, KorelNodeType nodeType) {
  const auto memberships = ActiveMemberships(store, host);
  const std::string there = " (with KOREL_LAB_HOST=" + host.name + ")";
  if (memberships.empty()) {
    Fail("host ", Quoted(host.name), " is in no cluster",
         WayIn(store, host, std::string(kZeroUuid)), there);
  }
  const std::string first = memberships.front().clusterUuid;
  if (memberships.front().isClient) {
    Fail("host ", Quoted(host.name), " is in client cluster ", first,
         " and has no node type; it leaves by ", WayOut(first, true), there);
  }
  if (memberships.size() > 1 && nodeType != KorelNodeType::Witness) {
    Fail("host ", Quoted(host.name), " is in several clusters, which only a witness can be; ",
         "it leaves one by ", WayOut(first, true), there);
  }
  for (const Membership& membership : memberships) {
    if (membership.nodeType == nodeType) continue;
    if (nodeType == KorelNodeType::Witness) CheckHasNoWitness(store, membership.clusterId);
    Execute(store, "UPDATE memberships SET nodeType = ? WHERE host = ? AND cluster = ?",
            static_cast<int>(nodeType), host.id, membership.clusterId);
    NoteMemberChange(store, membership.clusterId);
  }
}

std::vector<Cluster> AllClusters(Store& store) {
  std::vector<Cluster> clusters;
  for (const Row& row : Query(store, "SELECT id, uuid, isClient FROM clusters ORDER BY id"))
    clusters.push_back(ReadCluster(store, row));
  return clusters;
}

Cluster ClusterOf(Store& store, const std::string& uuid) {
  Query row(store, "SELECT id, uuid, isClient FROM clusters WHERE uuid = ?", CanonicalUuid(uuid));
  if (!row.Next()) Fail("there is no cluster ", uuid);
  return ReadCluster(store, row);
}

std::vector<ClusterMember> MembersOf(Store& store, std::int64_t clusterId) {
  std::vector<ClusterMember> members;
  for (const Row& row :
       Query(store,
             "SELECT h.name, h.nodeUuid, coalesce(h.faultDomain, h.name), m.nodeType, m.isActive "
             "FROM memberships m JOIN hosts h ON h.id = m.host WHERE m.cluster = ? ORDER BY m.id",
             clusterId)) {
    members.push_back({row.Text(0), row.Text(1), row.Text(2),
                       static_cast<KorelNodeType>(row.Number(3)), row.Flag(4)});
  }
  return members;
}

}  // namespace lab
