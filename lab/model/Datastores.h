#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"
#include "platform/hostctl/Records.h"

namespace lab {

/// Adds the default datastore of a new cluster, named "default".
void AddDefaultDatastore(Store& store, std::int64_t clusterId, const std::string& clusterUuid);

/// The datastores of the host's clusters and those that these have mounted from others, each once:
/// cluster by cluster in the order of joining, the default one first, then by name. None when the
/// host is in no cluster.
std::vector<std::shared_ptr<Tovrin::Korel::KorelDatastore>> KnownDatastores(Store& store,
                                                                            const Host& host);
/// Adds a datastore for all members of the host's first cluster: a new one, or, when the record
/// names the cluster that exports it, a mount of an existing one. A mount bears the given name in
/// the host's cluster, which may differ from the one it has where it is exported (all clusters have
/// a "default"). Either way name and UUID must be new among the datastores known to the host. A
/// client host has mounts alone.
void AddDatastore(Store& store, const Host& host, const Tovrin::Korel::KorelDatastore& datastore);
/// Removes a datastore that is not the default one and is mounted by no other cluster, or a mount.
/// Throws KorelCtlException on a client host; so do ClearDatastores and RenameDatastore.
void RemoveDatastore(Store& store, const Host& host, const std::string& uuid);
/// Removes all that RemoveDatastore would of the host's first cluster; none when one of them is
/// mounted by another cluster.
void ClearDatastores(Store& store, const Host& host);
/// Throws KorelCtlException when another cluster has one of the cluster's datastores mounted.
void CheckNoneIsMounted(Store& store, std::int64_t clusterId);
/// An empty UUID means the default datastore of the first cluster.
std::string DatastoreName(Store& store, const Host& host, const std::string& uuid);
/// An empty UUID means the default datastore, which stays it under any name. Mounts keep theirs.
void RenameDatastore(Store& store, const Host& host, const std::string& uuid,
                     const std::string& name);

}  // namespace lab
