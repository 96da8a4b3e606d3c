#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/hostctl/KorelCtlException.h"
#include "platform/hostctl/Records.h"

namespace Tovrin::Korel {

/// The storage cluster's control plane on this host. Every operation throws KorelCtlException when
/// it fails, and has then changed nothing. Devices are named as the host lists them. An evacuation
/// mode is "NoAction", "EnsureObjectAccessibility", "EvacuateAllData", or empty for the library's
/// default, which is "NoAction". Libraries of hosts have these operations in this order, and no
/// others: what is added goes to Optional.h.
class KorelInfo {
 public:
  /// One unicast agent.
  struct KorelUnicastAddressInfo {
    std::string nodeUuid;
    KorelUnicastAgentType isWitness = KorelUnicastAgentType::Node;  ///< the agent's type
    bool supportsUnicast = false;
    std::string address;
    std::int64_t port = 0;
    std::string interfaceName;   ///< bound outgoing interface; empty for none
    std::string certThumbprint;  ///< empty when not known
    std::string subClusterUuid;
  };

  using KorelConfigGeneration = Tovrin::Korel::KorelConfigGeneration;

  virtual ~KorelInfo() = default;

  /// Adds or reconfigures one interface in the Korel network configuration.
  virtual void SetHsknicConfig(const KorelHskNicConfig2& config) = 0;
  /// All configured Korel network interfaces.
  virtual std::vector<std::unique_ptr<KorelHskNicConfig2>> GetHsknicConfigs() = 0;
  /// Fills the record of one disk of `disks`, claimed or not.
  virtual void GetDiskInfo(const Uuid& disk, const KorelDiskList& disks, KorelDiskInfo& info) = 0;
  /// Claims devices into a new disk group, or the group that `cachingDevice` already serves.
  virtual void AddDisks(const std::string& cachingDevice,
                        const std::vector<std::string>& capacityDevices) = 0;
  /// Mounts a disk group named by its caching device. `force` also mounts it when a disk of it is
  /// not healthy.
  virtual void MountDiskGroup(const std::string& cachingDevice, bool force) = 0;
  /// Mounts the disk of that UUID; the whole group when it is a caching device.
  virtual void MountDiskByUuid(const std::string& uuid) = 0;
  virtual void MountDisk(const std::string& device) = 0;
  /// Removes one capacity disk from its group.
  virtual void RemoveDisk(const std::string& device, const std::string& evacuationMode) = 0;
  /// Removes a disk group named by its caching device.
  virtual void RemoveDiskGroup(const std::string& cachingDevice,
                               const std::string& evacuationMode) = 0;
  /// Rebuilds a disk group. `trimCode`: 0 metadata only, 1 full disk, 2 none. With `force`
  /// unhealthy disks are left out and named in `skippedDisks`; without it they are an error.
  virtual void RebuildDiskGroup(const std::string& cachingDevice, const std::string& evacuationMode,
                                int trimCode, bool force,
                                std::vector<std::string>& skippedDisks) = 0;
  /// The same, named by the UUID of the caching device.
  virtual void RebuildDiskGroupByUuid(const std::string& uuid, const std::string& evacuationMode,
                                      int trimCode, bool force,
                                      std::vector<std::string>& skippedDisks) = 0;
  virtual void UnmountDiskGroupWithMode(const std::string& cachingDevice,
                                        const std::string& evacuationMode) = 0;
  /// Unmounts a disk group without moving data. `force` also unmounts it while it is in use.
  virtual void UnmountDiskGroup(const std::string& cachingDevice, bool force) = 0;
  virtual void UnmountDisk(const std::string& device, bool force) = 0;
  /// Unmounts the disk of that UUID; the whole group when it is a caching device.
  virtual void UnmountDiskByUuid(const std::string& uuid) = 0;
  /// Removes the disk of that UUID; the whole group when it is a caching device.
  virtual void RemoveDiskByUuid(const std::string& uuid, const std::string& evacuationMode) = 0;
  /// Sets the preferred fault domain of a stretched cluster; only on its witness.
  virtual void SetPreferredFaultDomain(const std::string& name, const std::string& clusterUuid) = 0;
  /// Takes the interface out of the configuration for one traffic type. With `force` an interface
  /// that is not configured is no error.
  virtual void RemoveHsknic(const std::string& interfaceName, bool force,
                            const std::string& trafficType) = 0;
  /// Makes the running configuration follow the stored agents. `text` is reserved: empty.
  virtual void RefreshUnicastAgents(const std::string& text = "") = 0;
  /// Adds one unicast agent. `boundInterface` counts only with `hasBoundInterface`; `reserved` is
  /// empty.
  virtual void AddUnicastAgent(const std::string& agentUuid, KorelUnicastAgentType type,
                               bool supportsUnicast, const std::string& address, std::int64_t port,
                               bool hasBoundInterface, const std::string& boundInterface,
                               const std::string& reserved, const std::string& certThumbprint,
                               const std::string& clusterUuid) = 0;
  /// Removes one unicast agent; `reserved` is 0, an empty cluster UUID means any cluster. False
  /// when the running configuration could not follow at once and wants a refresh.
  virtual bool RemoveUnicastAgent(const std::string& agentUuid, const std::string& address,
                                  std::int64_t port, KorelUnicastAgentType type, int reserved,
                                  const std::string& clusterUuid, bool clientMode) = 0;
  /// The configured agents as entry texts, which KorelUtil::KorelUnicastAddressInfoFromString
  /// reads. An empty cluster UUID means all clusters.
  virtual std::vector<std::string> GetUnicastAgentEntries(const std::string& clusterUuid) = 0;
  /// The addresses of the unicast witnesses already configured.
  virtual std::vector<std::string> GetUnicastWitnesses() = 0;
  /// Makes the persisted network configuration the active one.
  virtual void RestoreNetworkConfig() = 0;
  /// Makes the persisted cluster membership the active one. The flags name the two stages of a
  /// boot; at most one is set.
  virtual void RestoreCluster(bool boot, bool postboot) = 0;
  virtual void ClearNetworkConfig() = 0;
  /// Removes all datastores but the default one.
  virtual void ClearDatastores() = 0;
  /// Joins the host to a cluster. `preferredFaultDomain` is for a witness, else empty; with `wait`
  /// it returns when the host is in. The last two are reserved: 0.
  virtual void JoinCluster(const Uuid& clusterUuid, KorelNodeType nodeType,
                           const std::string& preferredFaultDomain, bool wait, int reserved1,
                           int reserved2) = 0;
  /// Creates a cluster and joins this host. The flags are fixed: true, false.
  virtual void CreateCluster(const std::string& clusterUuid, bool persist, bool wait) = 0;
  /// Joins the host to a client cluster, which is made when it does not exist. `wait`: false.
  virtual void JoinClientCluster(const std::string& clusterUuid, bool wait) = 0;
  /// Leaves a cluster or client cluster. `wait`: false.
  virtual void LeaveCluster(const Uuid& clusterUuid, bool wait) = 0;
  /// The host's cluster state. Never null; a record that is not detailed has only `enabled`.
  virtual std::shared_ptr<KorelClusterInfo> GetClusterInfo(bool detailed) = 0;
  virtual void SetFaultDomainName(const std::string& name) = 0;
  /// Back to the default, a fault domain of the host's own.
  virtual void ResetFaultDomain() = 0;
  virtual std::string GetFaultDomainName() = 0;
  virtual void AddCapacityFlashTag(const std::string& device) = 0;
  virtual void AddKorelDirectTag(const std::string& device) = 0;
  virtual void RemoveCapacityFlashTag(const std::string& device) = 0;
  virtual void RemoveKorelDirectTag(const std::string& device) = 0;
  /// Sets every default policy back to its built-in value.
  virtual void ClearDefaultPolicies() = 0;
  /// Every cluster the host belongs to, in the order of joining.
  virtual std::vector<std::string> GetJoinedClusterUuids() = 0;
  /// The cluster the host is in, the first when there are several; all zeros when there is none.
  virtual std::string GetClusterUuid() = 0;
  /// An empty UUID means the default datastore.
  virtual std::string GetDatastoreName(const std::string& uuid) = 0;
  /// An empty UUID means the default datastore.
  virtual void SetDatastoreName(const std::string& uuid, const std::string& newName) = 0;
  virtual void AddDatastore(const KorelDatastore& datastore) = 0;
  virtual void RemoveDatastore(const std::string& uuid) = 0;
  /// All datastores known to the host, the default one first.
  virtual std::vector<std::shared_ptr<KorelDatastore>> GetDatastores() = 0;
  /// `trafficType` is "korel" or "witness".
  virtual bool IsHsknicConfigured(const std::string& interfaceName,
                                  const std::string& trafficType) = 0;
  /// Appends the UUIDs of all disks in the host's Korel configuration.
  virtual void ListDiskUuids(std::vector<Uuid>& uuids) = 0;
  virtual std::string GetDefaultPolicy(KorelPolicyClass policyClass) = 0;
  /// Appends the configured agents of one cluster, of all for an empty UUID. With `all` also agents
  /// that do not support unicast.
  virtual void GetUnicastAgents(std::vector<KorelUnicastAddressInfo>& agents, bool all,
                                const std::string& clusterUuid) = 0;
  /// In Mbps; 0 means no throttling.
  virtual std::int64_t GetResyncThrottle() = 0;
  virtual void SetResyncThrottle(std::int64_t mbps) = 0;
  /// In Mbps, of the disk group with the heaviest resync workload.
  virtual std::int64_t GetResyncBandwidth() = 0;
  /// `fromCluster` asks the cluster rather than the host's last known state.
  virtual bool IsDataInTransitEncryptionEnabled(const std::string& clusterUuid,
                                                bool fromCluster) = 0;
  /// `state` is "SETTLED"; `reserved` is 0.
  virtual void SetDataInTransitEncryption(const std::string& clusterUuid, bool enabled,
                                          const std::string& state, int reserved) = 0;
  /// In minutes.
  virtual std::int64_t GetRekeyInterval(const std::string& clusterUuid, bool fromCluster) = 0;
  virtual void SetRekeyInterval(const std::string& clusterUuid, std::int64_t minutes) = 0;
  /// The host is joined to a client cluster.
  virtual bool IsClientModeEnabled() = 0;
  virtual void SetKorelMaxEnabled(bool enabled) = 0;
};

}  // namespace Tovrin::Korel

namespace Tovrin::Lib::Korel {

/// The control plug-in of the host.
class KorelPlugin {
 public:
  virtual ~KorelPlugin() = default;

  /// The control interface; null when the plug-in is of another version than the host.
  virtual std::unique_ptr<Tovrin::Korel::KorelInfo> GetKorelInfo() = 0;
};

class KorelPluginFactory {
 public:
  /// Never null. Throws KorelCtlException when the host has no control plane.
  static std::unique_ptr<KorelPlugin> GetKorelPlugin();
};

}  // namespace Tovrin::Lib::Korel
