#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"
#include "platform/hostctl/Records.h"

namespace lab {

/// A host's part in one cluster.
struct Membership {
  std::int64_t clusterId = 0;
  std::string clusterUuid;
  bool isClient = false;  ///< of a client cluster
  Tovrin::Korel::KorelNodeType nodeType = Tovrin::Korel::KorelNodeType::Normal;
  bool isPersisted = false;  ///< it outlives a reboot
};

/// The clusters in which the host takes part now, in the order of joining.
std::vector<Membership> ActiveMemberships(Store& store, const Host& host);
/// The first of them, which counts where one cluster is meant.
std::optional<Membership> FirstMembership(Store& store, const Host& host);
/// The UUIDs of all of them.
std::vector<std::string> JoinedClusterUuids(Store& store, const Host& host);
/// The UUID of the first of them; all zeros when there is none.
std::string FirstClusterUuid(Store& store, const Host& host);
/// The host's part in that cluster. Throws KorelCtlException when it takes no part in it now,
/// saying what would change that.
Membership RequireMember(Store& store, const Host& host, const std::string& clusterUuid);
/// The UUIDs of the clusters that a restore would make active, in the order of joining.
std::vector<std::string> InactiveClusterUuids(Store& store, const Host& host);
/// Throws KorelCtlException unless the host takes part in a cluster that is no client cluster; it
/// says what would change that.
void RequireEnabled(Store& store, const Host& host);
/// The host takes part in a cluster that is no client cluster.
bool IsEnabled(Store& store, const Host& host);
/// The host takes part in a client cluster.
bool IsClientMode(Store& store, const Host& host);
/// What the host is to its clusters; Normal when it is in none.
Tovrin::Korel::KorelNodeType NodeTypeOf(Store& store, const Host& host);

/// Makes a cluster with this host and a default datastore. Without `persist` the membership is not
/// restored later. Throws KorelCtlException when the host is in a cluster or the UUID is taken.
void CreateCluster(Store& store, const Host& host, const std::string& uuid, bool persist);
/// Joins a cluster, which is made with a default datastore when nobody in the lab knows it. A
/// witness, and only a witness, names the preferred fault domain, and may join several clusters; a
/// cluster has one witness.
void JoinCluster(Store& store, const Host& host, const Tovrin::Korel::Uuid& uuid,
                 Tovrin::Korel::KorelNodeType nodeType, const std::string& preferredFaultDomain);
/// Joins a client cluster, which is made when it does not exist.
void JoinClientCluster(Store& store, const Host& host, const std::string& uuid);
/// Leaves a cluster of either kind, persisted or active; the host's agents of the cluster go too.
/// With its last member a cluster goes, and its datastores go. Throws KorelCtlException when
/// another cluster has one of these mounted. A host that was in no other cluster is then no Korel
/// Max host.
void LeaveCluster(Store& store, const Host& host, const Tovrin::Korel::Uuid& uuid);

/// What a reboot does: the host takes part in no cluster. Memberships that are not persisted end,
/// the others stay for RestoreClusters.
void SuspendClusters(Store& store, const Host& host);
/// Makes the persisted memberships the active ones. The flags name the stage of a boot, which makes
/// no difference; throws KorelCtlException when both are set.
void RestoreClusters(Store& store, const Host& host, bool boot, bool postboot);

/// "normal", "witness" or "metadata"; throws KorelCtlException for any other number.
const char* NodeTypeName(Tovrin::Korel::KorelNodeType nodeType);
/// Makes the host something else to its clusters. Throws KorelCtlException when it is in none, in a
/// client cluster, or in several, which only a witness can be, or when a cluster would have a
/// second witness.
void SetNodeType(Store& store, const Host& host, Tovrin::Korel::KorelNodeType nodeType);

/// One cluster of the lab.
struct Cluster {
  std::int64_t id = 0;
  std::string uuid;
  bool isClient = false;
  std::string preferredFaultDomain;  ///< empty for none, and while no data host lies in it
  std::vector<std::string> members;  ///< host names in the order of joining
};
std::vector<Cluster> AllClusters(Store& store);
/// Throws KorelCtlException when the lab has no cluster of that UUID.
Cluster ClusterOf(Store& store, const std::string& uuid);

/// A host of a cluster.
struct ClusterMember {
  std::string hostName;
  std::string nodeUuid;
  std::string faultDomain;
  Tovrin::Korel::KorelNodeType nodeType = Tovrin::Korel::KorelNodeType::Normal;
  bool isActive = false;  ///< false: it was rebooted and not restored
};
/// In the order of joining.
std::vector<ClusterMember> MembersOf(Store& store, std::int64_t clusterId);

}  // namespace lab
