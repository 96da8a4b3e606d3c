#include "lab/model/Datastores.h"

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
    known.push_back(
        {row.Number(0), row.Text(1), row.Text(2), row.Text(3), row.Flag(4), row.Flag(5)});
  }
  return known;
}

Membership RequireMembership(Store& store, const Host& host) {
  auto own = FirstMembership(store, host);
  if (!own) Fail("Korel is not enabled on this host: it is in no cluster");
  return *own;
}

Known Find(Store& store, const Membership& own, const std::string& uuid) {
  if (uuid.empty()) {
    const auto known = KnownTo(store, own, kDefault);
    if (known.empty()) Fail("a client cluster has no default datastore");
    return known.front();
  }
  const auto known = KnownTo(store, own, kOfUuid, CanonicalUuid(uuid));
  if (known.empty()) Fail("the host knows no datastore ", uuid);
  return known.front();
}

/// `except` is the datastore that may have the name, being the one that is renamed.
void CheckNameIsFree(Store& store, const Membership& own, const std::string& name,
                     std::int64_t except = 0) {
  for (const Known& datastore : KnownTo(store, own, kOfName, name)) {
    if (datastore.id == except) continue;
    Fail("datastore name ", Quoted(name), " is taken by datastore ", datastore.uuid);
  }
}

void CheckNotMountedElsewhere(Store& store, const Known& datastore) {
  const auto clusters = Texts(store,
                              "SELECT c.uuid FROM mounts m JOIN clusters c ON c.id = m.cluster "
                              "WHERE m.datastore = ? ORDER BY c.id",
                              datastore.id);
  if (clusters.empty()) return;
  Fail("datastore ", Quoted(datastore.name), " is mounted by cluster ", Joined(clusters, ", "),
       "; remove it there first");
}

void AddLocal(Store& store, const Membership& own, const std::string& uuid,
              const std::string& name) {
  if (own.isClient) {
    Fail("a client cluster has no datastores of its own; name the cluster that exports it");
  }
  if (Exists(store, "SELECT 1 FROM datastores WHERE uuid = ?", uuid)) {
    Fail("datastore UUID ", uuid, " is taken");
  }
  CheckNameIsFree(store, own, name);
  Execute(store, "INSERT INTO datastores (uuid, cluster, name, isDefault) VALUES (?, ?, ?, 0)",
          uuid, own.clusterId, name);
}

/// The datastore of that UUID that the other cluster exports.
std::int64_t FindExported(Store& store, const KorelDatastore& wanted) {
  const std::string exporter = CanonicalUuid(wanted.GetClusterUuid());
  if (!Exists(store, "SELECT 1 FROM clusters WHERE uuid = ?", exporter)) {
    Fail("there is no cluster ", wanted.GetClusterUuid());
  }
  Query row(store,
            "SELECT d.id FROM datastores d JOIN clusters c "
            "ON c.id = d.cluster WHERE d.uuid = ? AND c.uuid = ?",
            CanonicalUuid(wanted.GetUuid()), exporter);
  if (!row.Next()) {
    Fail("cluster ", wanted.GetClusterUuid(), " exports no datastore ", wanted.GetUuid());
  }
  return row.Number(0);
}

void AddMount(Store& store, const Membership& own, const KorelDatastore& mounted) {
  if (CanonicalUuid(mounted.GetClusterUuid()) == own.clusterUuid) {
    Fail("cluster ", mounted.GetClusterUuid(),
         " is the host's own; its datastores are not mounted as remote ones");
  }
  const auto datastore = FindExported(store, mounted);
  const auto known = KnownTo(store, own, kOfUuid, CanonicalUuid(mounted.GetUuid()));
  if (!known.empty()) {
    Fail("datastore ", mounted.GetUuid(), " is mounted already, as ", Quoted(known.front().name));
  }
  CheckNameIsFree(store, own, mounted.GetName());
  Execute(store, "INSERT INTO mounts (cluster, datastore, name) VALUES (?, ?, ?)", own.clusterId,
          datastore, mounted.GetName());
}

void Remove(Store& store, const Membership& own, const Known& datastore) {
  if (datastore.isRemote) {
    Execute(store, "DELETE FROM mounts WHERE cluster = ? AND datastore = ?", own.clusterId,
            datastore.id);
    return;
  }
  CheckNotMountedElsewhere(store, datastore);
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
  const auto own = FirstMembership(store, host);
  if (!own) return datastores;
  for (const Known& known : KnownTo(store, *own, kAll)) {
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
  const Membership own = RequireMembership(store, host);
  if (isLocal) {
    AddLocal(store, own, uuid, name);
  } else {
    AddMount(store, own, datastore);
  }
  NoteChange(store, own.clusterId);
}

void RemoveDatastore(Store& store, const Host& host, const std::string& uuid) {
  CheckedUuid(uuid);  // an empty one does not stand for the default datastore here
  const Membership own = RequireMembership(store, host);
  const Known datastore = Find(store, own, uuid);
  if (datastore.isDefault) Fail("the default datastore cannot be removed");
  Remove(store, own, datastore);
  NoteChange(store, own.clusterId);
}

void ClearDatastores(Store& store, const Host& host) {
  const Membership own = RequireMembership(store, host);
  bool isChanged = false;
  for (const Known& datastore : KnownTo(store, own, kAll)) {
    if (datastore.isDefault) continue;
    Remove(store, own, datastore);
    isChanged = true;
  }
  if (isChanged) NoteChange(store, own.clusterId);
}

std::string DatastoreName(Store& store, const Host& host, const std::string& uuid) {
  return Find(store, RequireMembership(store, host), uuid).name;
}

void RenameDatastore(Store& store, const Host& host, const std::string& uuid,
                     const std::string& name) {
  CheckPlainName("datastore", name);
  const Membership own = RequireMembership(store, host);
  const Known datastore = Find(store, own, uuid);
  if (datastore.isRemote) {
    Fail("datastore ", Quoted(datastore.name), " belongs to cluster ", datastore.clusterUuid,
         " and is renamed there");
  }
  CheckNameIsFree(store, own, name, datastore.id);
  if (name == datastore.name) return;
  Execute(store, "UPDATE datastores SET name = ? WHERE id = ?", name, datastore.id);
  NoteChange(store, own.clusterId);
}

}  // namespace lab
