#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/hostctl/Network.h"

/// The records that cross the boundary to the host control library. UUIDs in texts have the form
/// "nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn"; all zeros stands for "none".
namespace Tovrin::Korel {

/// A 128-bit identifier.
struct Uuid {
  std::uint64_t high = 0;
  std::uint64_t low = 0;

  bool operator==(const Uuid&) const = default;
};

/// What a host is to its cluster.
enum class KorelNodeType : int { Normal = 0, Witness = 1, Metadata = 2 };

/// What a unicast agent is to its cluster.
enum class KorelUnicastAgentType : int { Node = 0, Witness = 1, Metadata = 2, Remote = 3 };

/// Which disks of a host to list.
enum class KorelDiskTypes : int {
  All = 0,      ///< every disk that the host sees
  Claimed = 1,  ///< disks in a disk group of the host
};

/// Classes of objects that have a default storage policy, in the library's order.
enum class KorelPolicyClass { Cluster, Vdisk, VmNamespace, VmSwap, Vmem };

/// Feature switches of the host.
enum class KORELFeature { ClientMode, RebuildTrim, MetadataNode, Korel2Config, ArchivalProtection };

/// One datastore.
class KorelDatastore {
 public:
  /// `clusterUuid` is the cluster that exports the datastore; empty for a local one that is being
  /// added. Records from the library always carry it.
  KorelDatastore(std::string uuid, std::string name, std::string clusterUuid, bool isDefault)
      : uuid_(std::move(uuid)),
        name_(std::move(name)),
        clusterUuid_(std::move(clusterUuid)),
        isDefault_(isDefault) {}

  const std::string& GetUuid() const { return uuid_; }
  const std::string& GetName() const { return name_; }
  const std::string& GetClusterUuid() const { return clusterUuid_; }
  bool IsDefault() const { return isDefault_; }
  /// It belongs to a cluster other than the given one.
  bool IsRemote(const std::string& localClusterUuid) const {
    return clusterUuid_ != localClusterUuid;
  }

 private:
  std::string uuid_;
  std::string name_;
  std::string clusterUuid_;
  bool isDefault_;
};

/// One multicast group address of either family; the value of the other family is not used.
struct KorelIpAddress {
  bool isV6 = false;
  Network::Ipv4Address v4;
  Network::Ipv6Address v6;
  std::string text;  ///< as it was given
};

/// One interface of the Korel network configuration. "Primary" is the master (upstream) group.
/// Ports and time-to-live are as wide as the command line's integers, so that the library judges
/// the number the user typed.
class KorelHskNicConfig {
 public:
  const std::string& GetHsknicName() const { return name_; }
  /// Empty in a record that does not come from the library.
  const std::string& GetIfaceUuid() const { return ifaceUuid_; }
  const KorelIpAddress& GetAgentMulticastGroup() const { return agentV4_; }
  std::int64_t GetAgentMulticastPort() const { return agentPort_; }
  const KorelIpAddress& GetPrimaryMulticastGroup() const { return masterV4_; }
  std::int64_t GetPrimaryMulticastPort() const { return masterPort_; }
  std::int64_t GetHostUnicastPort() const { return unicastPort_; }
  std::int64_t GetMulticastTTL() const { return ttl_; }

  void SetIfaceUuid(std::string uuid) { ifaceUuid_ = std::move(uuid); }

 protected:
  KorelHskNicConfig(std::string name, KorelIpAddress agentV4, KorelIpAddress masterV4,
                    std::int64_t agentPort, std::int64_t masterPort, std::int64_t unicastPort,
                    std::int64_t ttl)
      : name_(std::move(name)),
        agentV4_(std::move(agentV4)),
        masterV4_(std::move(masterV4)),
        agentPort_(agentPort),
        masterPort_(masterPort),
        unicastPort_(unicastPort),
        ttl_(ttl) {}

 private:
  std::string name_;
  std::string ifaceUuid_;
  KorelIpAddress agentV4_;
  KorelIpAddress masterV4_;
  std::int64_t agentPort_;
  std::int64_t masterPort_;
  std::int64_t unicastPort_;
  std::int64_t ttl_;
};

/// The same with IPv6 groups and traffic types.
class KorelHskNicConfig2 : public KorelHskNicConfig {
 public:
  /// `extra` is reserved: empty.
  KorelHskNicConfig2(std::string name, KorelIpAddress agentV4, KorelIpAddress agentV6,
                     KorelIpAddress masterV4, KorelIpAddress masterV6, std::int64_t agentPort,
                     std::int64_t masterPort, std::int64_t unicastPort, std::int64_t ttl,
                     bool carriesKorel, bool carriesWitness, std::string extra)
      : KorelHskNicConfig(std::move(name), std::move(agentV4), std::move(masterV4), agentPort,
                          masterPort, unicastPort, ttl),
        korelTraffic(carriesKorel),
        witnessTraffic(carriesWitness),
        agentV6_(std::move(agentV6)),
        masterV6_(std::move(masterV6)),
        extra_(std::move(extra)) {}

  const KorelIpAddress& GetAgentV6MulticastGroup() const { return agentV6_; }
  const KorelIpAddress& GetPrimaryV6MulticastGroup() const { return masterV6_; }
  /// Replaces `types` by the traffic types that the interface carries: "korel", then "witness".
  void GetTrafficTypes(std::vector<std::string>& types) const {
    types.clear();
    if (korelTraffic) types.emplace_back("korel");
    if (witnessTraffic) types.emplace_back("witness");
  }
  const std::string& GetExtra() const { return extra_; }

  bool korelTraffic;
  bool witnessTraffic;

 private:
  KorelIpAddress agentV6_;
  KorelIpAddress masterV6_;
  std::string extra_;
};

/// A disk seen by the host.
class KorelDiskLun {
 public:
  KorelDiskLun(const Uuid& uuid, std::string name) : uuid_(uuid), name_(std::move(name)) {}

  const Uuid& GetUuid() const { return uuid_; }
  const std::string& GetName() const { return name_; }

 private:
  Uuid uuid_;
  std::string name_;
};

using KorelDiskList = std::vector<std::shared_ptr<KorelDiskLun>>;

/// What the host knows of one disk. "In HXDS" is: present in the cluster directory.
struct KorelDiskInfo {
  std::int32_t onDiskFormatVersion = 0;
  bool isSsd = false;
  bool isUsedByThisHost = false;
  bool isInHxds = false;
  std::int32_t dataEfficiencyMode = 0;  ///< 0 none, 1 dedup and compression, 2 compression only
  bool isChecksumOk = false;
  bool isEncryptionMetadataChecksumOk = false;
  bool isAllFlash = false;
  bool isCapacityTier = false;
  bool isEncrypted = false;
  bool isDiskKeyLoaded = false;
  bool isMounted = false;
  std::string deviceName;
  std::string korelUuid;
  std::string diskGroupUuid;  ///< empty when the disk is in no group
  std::string diskGroupName;  ///< empty when the disk is in no group
  std::string vendor;
  std::string model;
  std::string checksum;
  std::string creationTime;  ///< empty when the disk was never claimed
};

/// What the host knows of one disk of the storage pool.
struct KorelStoragePoolDiskInfo {
  std::string deviceName;
  std::string korelUuid;
  bool isSsd = false;
  bool isUsedByThisHost = false;
  bool isInHxds = false;
  bool isMounted = false;
  std::int32_t onDiskFormatVersion = 0;
  std::int64_t capacityBytes = 0;
  std::string creationTime;
};

/// Which change of the cluster's configuration a host has seen last.
struct KorelConfigGeneration {
  std::int64_t number = 0;  ///< grows by one with each change
  std::string time;         ///< local time of that change; empty when there was none
};

/// The host's cluster state.
struct KorelClusterInfo {
  bool enabled = false;          ///< the host is a member of a Korel cluster
  std::string nodeUuid;          ///< the host's own UUID, also when it is in no cluster
  std::string maintenanceState;  ///< "OFF" or what is going on
};

/// One cluster as its member sees it.
struct KorelClusterInfoDetailed {
  std::string clusterUuid;
  std::string nodeRole;                  ///< "MASTER", "BACKUP", "AGENT" or "WITNESS"
  std::string nodeHealth;                ///< "HEALTHY" or what is wrong
  std::vector<std::string> memberUuids;  ///< in the order in which they joined
  KorelConfigGeneration configGeneration;
};

}  // namespace Tovrin::Korel
