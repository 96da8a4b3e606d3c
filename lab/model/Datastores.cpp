#include "lab/model/Datastores.h"

#include <algorithm>

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/ClusterFacts.h"
#include "lab/model/Clusters.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelDatastore;

/// One datastore as a cluster knows it.
struct Known {
  std::int64_t id = 0;
  std::string uuid;
  std::string name;
  std::string clusterUuid;
  bool isDefault = false;
  bool isRemote = false;
  std::int64_t knownBy = 0;  ///< the cluster that owns or has mounted it
};

/// Which of the datastores that a cluster knows: conditions on its own, d, and on its mounts, m.
struct Which {
  const char* own;
  const char* mounted;
};
constexpr Which kAll{"", ""};
constexpr Which kDefault{"AND d.isDefault = 1 ", "AND FALSE "};
constexpr Which kOfUuid{"AND d.uuid = ?2 ", "AND d.uuid = ?2 "};
constexpr Which kOfName{"AND d.name = ?2 ", "AND m.name = ?2 "};

/// The default one first, then by name.
template <typename... Values>
std::vector<Known> KnownTo(Store& store, const Membership& own, const Which& which,
                           const Values&... values) {
  const std::string sql = Tovrin::Misc::StrCat(
      "SELECT d.id, d.uuid, d.name AS shown, c.uuid, d.isDefault AS first, 0 FROM datastores d "
      "JOIN clusters c ON c.id = d.cluster WHERE d.cluster = ?1 ",
      which.own,
      "UNION ALL SELECT d.id, d.uuid, m.name, c.uuid, 0, 1 FROM mounts m "
      "JOIN datastores d ON d.id = m.datastore JOIN clusters c ON c.id = d.cluster "
      "WHERE m.cluster = ?1 ",
      which.mounted, "ORDER BY first DESC, shown");
  std::vector<Known> known;
  for (const Row& row : Query(store, sql.c_str(), own.clusterId, values...)) {
    known.push_back({row.Number(0), row.Text(1), row.Text(2), row.Text(3), row.Flag(4), row.Flag(5),
                     own.clusterId});
  }
  return known;
}

/// What the host knows through all its clusters. What one of them owns and another has mounted is
/// there once, as its owner knows it.
template <typename... Values>
std::vector<Known> KnownOn(Store& store, const Host& host, const Which& which,
                           const Values&... values) {
  std::vector<Known> all;
  for (const Membership& own : ActiveMemberships(store, host)) {
    for (Known& known : KnownTo(store, own, which, values...)) {
      const auto same = std::find_if(all.begin(), all.end(),
                                     [&](const Known& each) { return each.id == known.id; });
      if (same == all.end()) {
        all.push_back(std::move(known));
      } else if (same->isRemote && !known.isRemote) {
        all.erase(same);
        all.push_back(std::move(known));
      }
    }
  }
  return all;
}

Membership RequireMembership(Store& store, const Host& host) {
  auto own = FirstMembership(store, host);
  if (!own) RequireEnabled(store, host);
  return *own;
}

Known Find(Store& store, const Host& host, const std::string& uuid) {
  const Membership first = RequireMembership(store, host);
  if (uuid.empty()) {
    const auto known = KnownTo(store, first, kDefault);
    if (known.empty()) Fail("a client cluster has no default datastore; --uuid names another one");
    return known.front();
  }
  const auto known = KnownOn(store, host, kOfUuid, CanonicalUuid(uuid));
  if (known.empty()) {
    Fail("the host knows no datastore ", uuid, "; 'korel datastore list' shows those it knows");
  }
  return known.front();
}

/// `except` is the datastore that may have the name, being the one that is renamed.
void CheckNameIsFree(Store& store, const Host& host, const std::string& name,
                     std::int64_t except = 0) {
  for (const Known& datastore : KnownOn(store, host, kOfName, name)) {
    if (datastore.id == except) continue;
    Fail("datastore name ", Quoted(name), " is taken by datastore ", datastore.uuid,
         "; 'korel datastore name set' renames one");
  }
}

void CheckNotMountedElsewhere(Store& store, std::int64_t id, const std::string& name,
                              const std::string& uuid) {
  std::vector<std::string> clusters;
  std::vector<std::string> ways;
  for (const Row& row : Query(store,
                              "SELECT c.uuid, c.isClient FROM mounts m "
                              "JOIN clusters c ON c.id = m.cluster WHERE m.datastore = ? "
                              "ORDER BY c.isClient, c.id",
                              id)) {
    clusters.push_back((row.Flag(1) ? "client cluster " : "cluster ") + row.Text(0));
    const std::string way = row.Flag(1) ? "'korel cluster leave' on each client host"
                                        : "'korel datastore remove --uuid " + uuid + "' there";
    if (ways.empty() || ways.back() != way) ways.push_back(way);
  }
  if (clusters.empty()) return;
  Fail("datastore ", Quoted(name), " is mounted by ", Joined(clusters, ", "), "; that ends by ",
       Joined(ways, " and "));
}

[[noreturn]] void FailTaken(const std::string& uuid) {
  Fail("datastore UUID ", uuid, " is taken; 'korel datastore list' shows by which one");
}

void AddLocal(Store& store, const Host& host, const std::string& uuid, const std::string& name) {
  RequireEnabled(store, host);
  if (!KnownOn(store, host, kOfUuid, uuid).empty()) FailTaken(uuid);
  CheckNameIsFree(store, host, name);
  Execute(store, "INSERT INTO datastores (uuid, cluster, name, isDefault) VALUES (?, ?, ?, 0)",
          uuid, RequireMembership(store, host).clusterId, name);
}

/// The datastore of that UUID that the other cluster exports.
std::int64_t FindExported(Store& store, const KorelDatastore& wanted) {
  const std::string exporter = CanonicalUuid(wanted.GetClusterUuid());
  if (!Exists(store, "SELECT 1 FROM clusters WHERE uuid = ?", exporter)) {
    Fail("there is no cluster ", wanted.GetClusterUuid(),
         "; 'autocli lab cluster list' shows those there are");
  }
  Query row(store,
            "SELECT d.id FROM datastores d JOIN clusters c "
            "ON c.id = d.cluster WHERE d.uuid = ? AND c.uuid = ?",
            CanonicalUuid(wanted.GetUuid()), exporter);
  if (!row.Next()) {
    Fail("cluster ", wanted.GetClusterUuid(), " exports no datastore ", wanted.GetUuid(),
         "; 'korel datastore list' on one of its hosts shows those it does");
  }
  return row.Number(0);
}

void AddMount(Store& store, const Host& host, const KorelDatastore& mounted) {
  const Membership own = RequireMembership(store, host);
  if (CanonicalUuid(mounted.GetClusterUuid()) == own.clusterUuid) {
    Fail("cluster ", mounted.GetClusterUuid(),
         " is the host's own; its datastores are not mounted as remote ones, and without "
         "--cluster-uuid a new one is added to it");
  }
  const auto datastore = FindExported(store, mounted);
  const auto known = KnownOn(store, host, kOfUuid, CanonicalUuid(mounted.GetUuid()));
  if (!known.empty() && known.front().isRemote) {
    Fail("datastore ", mounted.GetUuid(), " is mounted already, as ", Quoted(known.front().name),
         "; 'korel datastore list' shows it");
  }
  if (!known.empty()) FailTaken(mounted.GetUuid());
  CheckNameIsFree(store, host, mounted.GetName());
  Execute(store, "INSERT INTO mounts (cluster, datastore, name) VALUES (?, ?, ?)", own.clusterId,
          datastore, mounted.GetName());
}

void Remove(Store& store, const Known& datastore) {
  if (datastore.isRemote) {
    Execute(store, "DELETE FROM mounts WHERE cluster = ? AND datastore = ?", datastore.knownBy,
            datastore.id);
    return;
  }
  CheckNotMountedElsewhere(store, datastore.id, datastore.name, datastore.uuid);
  Execute(store, "DELETE FROM datastores WHERE id = ?", datastore.id);
}

}  // namespace

void AddDefaultDatastore(Store& store, std::int64_t clusterId, const std::string& clusterUuid) {
  Execute(store,
          "INSERT INTO datastores (uuid, cluster, name, isDefault) VALUES (?, ?, 'default', 1)",
          DerivedUuid("default datastore of " + clusterUuid), clusterId);
}

std::vector<std::shared_ptr<KorelDatastore>> KnownDatastores(Store& store, const Host& host) {
  std::vector<std::shared_ptr<KorelDatastore>> datastores;
  for (const Known& known : KnownOn(store, host, kAll)) {
    datastores.push_back(std::make_shared<KorelDatastore>(known.uuid, known.name, known.clusterUuid,
                                                          known.isDefault));
  }
  return datastores;
}

void AddDatastore(Store& store, const Host& host, const KorelDatastore& datastore) {
  const std::string uuid = CanonicalNewUuid(datastore.GetUuid());
  const std::string& name = datastore.GetName();
  CheckPlainName("datastore", name);
  if (datastore.IsDefault()) Fail("a default datastore is made with its cluster, never added");
  const bool isLocal = datastore.GetClusterUuid().empty();
  if (!isLocal) CheckedUuid(datastore.GetClusterUuid());
  if (isLocal) {
    AddLocal(store, host, uuid, name);
  } else {
    AddMount(store, host, datastore);
  }
  NoteChange(store, RequireMembership(store, host).clusterId);
}

void RemoveDatastore(Store& store, const Host& host, const std::string& uuid) {
  CheckedUuid(uuid);  // an empty one does not stand for the default datastore here
  RequireEnabled(store, host);
  const Known datastore = Find(store, host, uuid);
  if (datastore.isDefault)
    Fail(
        "the default datastore cannot be removed; it goes with its cluster, when 'korel cluster leave' takes out the last host");
  Remove(store, datastore);
  NoteChange(store, datastore.knownBy);
}

void ClearDatastores(Store& store, const Host& host) {
  RequireEnabled(store, host);
  const Membership own = RequireMembership(store, host);
  bool isChanged = false;
  for (const Known& datastore : KnownTo(store, own, kAll)) {
    if (datastore.isDefault) continue;
    Remove(store, datastore);
    isChanged = true;
  }
  if (isChanged) NoteChange(store, own.clusterId);
}

void CheckNoneIsMounted(Store& store, std::int64_t clusterId) {
  for (const Row& row :
       Query(store, "SELECT id, name, uuid FROM datastores WHERE cluster = ? ORDER BY id",
             clusterId)) {
    CheckNotMountedElsewhere(store, row.Number(0), row.Text(1), row.Text(2));
  }
}

std::string DatastoreName(Store& store, const Host& host, const std::string& uuid) {
  return Find(store, host, uuid).name;
}

void RenameDatastore(Store& store, const Host& host, const std::string& uuid,
                     const std::string& name) {
  CheckPlainName("datastore", name);
  const Known datastore = Find(store, host, uuid);
  if (datastore.isRemote) {
    Fail("datastore ", Quoted(datastore.name), " belongs to cluster ", datastore.clusterUuid,
         " and is renamed there, by 'korel datastore name set'");
  }
  if (name == datastore.name) return;
  CheckNameIsFree(store, host, name, datastore.id);
  Execute(store, "UPDATE datastores SET name = ? WHERE id = ?", name, datastore.id);
  NoteChange(store, datastore.knownBy);
}

}  // namespace lab
