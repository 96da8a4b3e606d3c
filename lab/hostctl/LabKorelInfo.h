#pragma once

#include "platform/hostctl/KorelInfo.h"

namespace lab {

/// The control interface of a lab host: each operation is one Call() of the model's function for
/// it, in the file of the same name as the model's.
class LabKorelInfo final : public Tovrin::Korel::KorelInfo {
 public:
  ~LabKorelInfo() override;
  void SetHsknicConfig(const Tovrin::Korel::KorelHskNicConfig2& config) override;
  std::vector<std::unique_ptr<Tovrin::Korel::KorelHskNicConfig2>> GetHsknicConfigs() override;
  void GetDiskInfo(const Tovrin::Korel::Uuid& disk, const Tovrin::Korel::KorelDiskList& disks,
                   Tovrin::Korel::KorelDiskInfo& info) override;
  void AddDisks(const std::string& cachingDevice,
                const std::vector<std::string>& capacityDevices) override;
  void MountDiskGroup(const std::string& cachingDevice, bool force) override;
  void MountDiskByUuid(const std::string& uuid) override;
  void MountDisk(const std::string& device) override;
  void RemoveDisk(const std::string& device, const std::string& evacuationMode) override;
  void RemoveDiskGroup(const std::string& cachingDevice,
                       const std::string& evacuationMode) override;
  void RebuildDiskGroup(const std::string& cachingDevice, const std::string& evacuationMode,
                        int trimCode, bool force, std::vector<std::string>& skippedDisks) override;
  void RebuildDiskGroupByUuid(const std::string& uuid, const std::string& evacuationMode,
                              int trimCode, bool force,
                              std::vector<std::string>& skippedDisks) override;
  void UnmountDiskGroupWithMode(const std::string& cachingDevice,
                                const std::string& evacuationMode) override;
  void UnmountDiskGroup(const std::string& cachingDevice, bool force) override;
  void UnmountDisk(const std::string& device, bool force) override;
  void UnmountDiskByUuid(const std::string& uuid) override;
  void RemoveDiskByUuid(const std::string& uuid, const std::string& evacuationMode) override;
  void SetPreferredFaultDomain(const std::string& name, const std::string& clusterUuid) override;
  void RemoveHsknic(const std::string& interfaceName, bool force,
                    const std::string& trafficType) override;
  void RefreshUnicastAgents(const std::string& text = "") override;
  void AddUnicastAgent(const std::string& agentUuid, Tovrin::Korel::KorelUnicastAgentType type,
                       bool supportsUnicast, const std::string& address, std::int64_t port,
                       bool hasBoundInterface, const std::string& boundInterface,
                       const std::string& reserved, const std::string& certThumbprint,
                       const std::string& clusterUuid) override;
  bool RemoveUnicastAgent(const std::string& agentUuid, const std::string& address,
                          std::int64_t port, Tovrin::Korel::KorelUnicastAgentType type,
                          int reserved, const std::string& clusterUuid, bool clientMode) override;
  std::vector<std::string> GetUnicastAgentEntries(const std::string& clusterUuid) override;
  std::vector<std::string> GetUnicastWitnesses() override;
  void RestoreNetworkConfig() override;
  void RestoreCluster(bool boot, bool postboot) override;
  void ClearNetworkConfig() override;
  void ClearDatastores() override;
  void JoinCluster(const Tovrin::Korel::Uuid& clusterUuid, Tovrin::Korel::KorelNodeType nodeType,
                   const std::string& preferredFaultDomain, bool wait, int reserved1,
                   int reserved2) override;
  void CreateCluster(const std::string& clusterUuid, bool persist, bool wait) override;
  void JoinClientCluster(const std::string& clusterUuid, bool wait) override;
  void LeaveCluster(const Tovrin::Korel::Uuid& clusterUuid, bool wait) override;
  std::shared_ptr<Tovrin::Korel::KorelClusterInfo> GetClusterInfo(bool detailed) override;
  void SetFaultDomainName(const std::string& name) override;
  void ResetFaultDomain() override;
  std::string GetFaultDomainName() override;
  void AddCapacityFlashTag(const std::string& device) override;
  void AddKorelDirectTag(const std::string& device) override;
  void RemoveCapacityFlashTag(const std::string& device) override;
  void RemoveKorelDirectTag(const std::string& device) override;
  void ClearDefaultPolicies() override;
  std::vector<std::string> GetJoinedClusterUuids() override;
  std::string GetClusterUuid() override;
  std::string GetDatastoreName(const std::string& uuid) override;
  void SetDatastoreName(const std::string& uuid, const std::string& newName) override;
  void AddDatastore(const Tovrin::Korel::KorelDatastore& datastore) override;
  void RemoveDatastore(const std::string& uuid) override;
  std::vector<std::shared_ptr<Tovrin::Korel::KorelDatastore>> GetDatastores() override;
  bool IsHsknicConfigured(const std::string& interfaceName,
                          const std::string& trafficType) override;
  void ListDiskUuids(std::vector<Tovrin::Korel::Uuid>& uuids) override;
  std::string GetDefaultPolicy(Tovrin::Korel::KorelPolicyClass policyClass) override;
  void GetUnicastAgents(std::vector<KorelUnicastAddressInfo>& agents, bool all,
                        const std::string& clusterUuid) override;
  std::int64_t GetResyncThrottle() override;
  void SetResyncThrottle(std::int64_t mbps) override;
  std::int64_t GetResyncBandwidth() override;
  bool IsDataInTransitEncryptionEnabled(const std::string& clusterUuid, bool fromCluster) override;
  void SetDataInTransitEncryption(const std::string& clusterUuid, bool enabled,
                                  const std::string& state, int reserved) override;
  std::int64_t GetRekeyInterval(const std::string& clusterUuid, bool fromCluster) override;
  void SetRekeyInterval(const std::string& clusterUuid, std::int64_t minutes) override;
  bool IsClientModeEnabled() override;
  void SetKorelMaxEnabled(bool enabled) override;
};

}  // namespace lab
