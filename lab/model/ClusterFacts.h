#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"
#include "platform/hostctl/Records.h"

namespace lab {

/// What the members of a cluster share besides its datastores. A host that was rebooted and not
/// restored is still a member.

/// Counts a change of the cluster's membership, datastores or settings and notes its time.
void NoteChange(Store& store, std::int64_t clusterId);
/// How many changes there were, and when the last one was.
Tovrin::Korel::KorelConfigGeneration ConfigGeneration(Store& store, std::int64_t clusterId);

/// The cluster has a witness, and its data hosts lie in two fault domains or it has none.
bool IsStretched(Store& store, std::int64_t clusterId);
/// One of the clusters in which the host takes part is stretched.
bool IsInStretchedCluster(Store& store, const Host& host);

/// Throws KorelCtlException unless a witness of the cluster may prefer the fault domain: a data
/// host of the cluster lies in it, if there is one.
void CheckPreferredFaultDomain(Store& store, std::int64_t clusterId, const std::string& name);
/// Empty when none is preferred, and while no data host of the cluster lies in it but others do.
std::string PreferredFaultDomainOf(Store& store, std::int64_t clusterId);
/// The same. Throws KorelCtlException unless the host takes part in the cluster.
std::string PreferredFaultDomain(Store& store, const Host& host, const std::string& clusterUuid);
/// Throws KorelCtlException unless the host takes part in the cluster as a witness.
void SetPreferredFaultDomain(Store& store, const Host& host, const std::string& name,
                             const std::string& clusterUuid);

/// The cluster as the host sees it: the members that take part now, the first data host of them
/// being "MASTER", the second "BACKUP", a witness "WITNESS", any other "AGENT". The host is
/// "HEALTHY", or it is said what is wrong, the causes joined by commas. Throws KorelCtlException
/// unless the host takes part in the cluster.
Tovrin::Korel::KorelClusterInfoDetailed DirectoryInfo(Store& store, const Host& host,
                                                      const std::string& clusterUuid);

/// How the traffic within a cluster is encrypted.
struct Encryption {
  bool isEnabled = false;
  std::int64_t rekeyMinutes = 1440;
};

/// What a new cluster has, when the lab knows none of that UUID. Throws KorelCtlException when it
/// is no UUID.
Encryption EncryptionOf(Store& store, const std::string& clusterUuid);
/// In minutes. Throws KorelCtlException unless the host takes part in the cluster.
std::int64_t RekeyInterval(Store& store, const Host& host, const std::string& clusterUuid);
/// `state` must be "SETTLED". Throws KorelCtlException unless the host takes part in the cluster;
/// so does SetRekeyInterval.
void SetEncryption(Store& store, const Host& host, const std::string& clusterUuid, bool isEnabled,
                   const std::string& state);
/// From 30 to 10080 minutes.
void SetRekeyInterval(Store& store, const Host& host, const std::string& clusterUuid,
                      std::int64_t minutes);

}  // namespace lab
