#include "tests/support/RecordingHost.h"

#include <cstring>

#include "platform/base/FeatureList.h"
#include "platform/base/Uuid.h"
#include "tests/support/Record.h"

namespace test {

RecordingHost* current = nullptr;

namespace {

using namespace Tovrin::Korel;

using Texts = std::vector<std::string>;

class RecordingKorelInfo : public KorelInfo {
 public:
  void SetHsknicConfig(const KorelHskNicConfig2& config) override {
    const auto group = [](const KorelIpAddress& one) { return (one.isV6 ? "v6:" : "") + one.text; };
    Record(__func__, config.GetHsknicName(), group(config.GetAgentMulticastGroup()),
           group(config.GetAgentV6MulticastGroup()), group(config.GetPrimaryMulticastGroup()),
           group(config.GetPrimaryV6MulticastGroup()), config.GetAgentMulticastPort(),
           config.GetPrimaryMulticastPort(), config.GetHostUnicastPort(), config.GetMulticastTTL(),
           config.korelTraffic, config.witnessTraffic, config.GetExtra());
  }
  std::vector<std::unique_ptr<KorelHskNicConfig2>> GetHsknicConfigs() override {
    Record(__func__);
    std::vector<std::unique_ptr<KorelHskNicConfig2>> answer;
    for (const auto& one : current->interfaces) {
      answer.push_back(std::make_unique<KorelHskNicConfig2>(one));
    }
    return answer;
  }
  void GetDiskInfo(const Uuid& disk, const KorelDiskList& disks, KorelDiskInfo& info) override {
    Record(__func__, disk);
    info = current->diskInfo;
    info.korelUuid = Text(disk);
    for (const auto& lun : disks) {
      if (lun->GetUuid() == disk) info.deviceName = lun->GetName();
    }
  }
  void AddDisks(Given ssd, const Texts& disks) override { Record(__func__, ssd, disks); }
  void MountDiskGroup(Given ssd, bool force) override { Record(__func__, ssd, force); }
  void MountDiskByUuid(Given uuid) override { Record(__func__, uuid); }
  void MountDisk(Given device) override { Record(__func__, device); }
  void RemoveDisk(Given device, Given mode) override { Record(__func__, device, mode); }
  void RemoveDiskGroup(Given ssd, Given mode) override { Record(__func__, ssd, mode); }
  void RebuildDiskGroup(Given ssd, Given mode, int trim, bool force, Texts& skipped) override {
    Record(__func__, ssd, mode, trim, force);
    skipped = current->skippedDisks;
  }
  void RebuildDiskGroupByUuid(Given uuid, Given mode, int trim, bool force,
                              Texts& skipped) override {
    Record(__func__, uuid, mode, trim, force);
    skipped = current->skippedDisks;
  }
  void UnmountDiskGroupWithMode(Given ssd, Given mode) override { Record(__func__, ssd, mode); }
  void UnmountDiskGroup(Given ssd, bool force) override { Record(__func__, ssd, force); }
  void UnmountDisk(Given device, bool force) override { Record(__func__, device, force); }
  void UnmountDiskByUuid(Given uuid) override { Record(__func__, uuid); }
  void RemoveDiskByUuid(Given uuid, Given mode) override { Record(__func__, uuid, mode); }
  void SetPreferredFaultDomain(Given name, Given cluster) override {
    Record(__func__, name, cluster);
  }
  void RemoveHsknic(Given name, bool force, Given type) override {
    Record(__func__, name, force, type);
  }
  void RefreshUnicastAgents(Given text) override { Record(__func__, text); }
  void AddUnicastAgent(Given uuid, KorelUnicastAgentType type, bool unicast, Given address,
                       std::int64_t port, bool bound, Given name, Given reserved, Given thumbprint,
                       Given cluster) override {
    Record(__func__, uuid, type, unicast, address, port, bound, name, reserved, thumbprint,
           cluster);
  }
  bool RemoveUnicastAgent(Given uuid, Given address, std::int64_t port, KorelUnicastAgentType type,
                          int reserved, Given cluster, bool client) override {
    return Answer(current->agentRemoved, __func__, uuid, address, port, type, reserved, cluster,
                  client);
  }
  Texts GetUnicastAgentEntries(Given cluster) override {
    return Answer(current->agentEntries, __func__, cluster);
  }
  Texts GetUnicastWitnesses() override { return Answer(current->witnesses, __func__); }
  void RestoreNetworkConfig() override { Record(__func__); }
  void RestoreCluster(bool boot, bool postboot) override { Record(__func__, boot, postboot); }
  void ClearNetworkConfig() override { Record(__func__); }
  void ClearDatastores() override { Record(__func__); }
  void JoinCluster(const Uuid& cluster, KorelNodeType type, Given preferred, bool wait,
                   int reserved1, int reserved2) override {
    Record(__func__, cluster, type, preferred, wait, reserved1, reserved2);
  }
  void CreateCluster(Given cluster, bool persist, bool wait) override {
    Record(__func__, cluster, persist, wait);
  }
  void JoinClientCluster(Given cluster, bool wait) override { Record(__func__, cluster, wait); }
  void LeaveCluster(const Uuid& cluster, bool wait) override { Record(__func__, cluster, wait); }
  std::shared_ptr<KorelClusterInfo> GetClusterInfo(bool detailed) override {
    Record(__func__, detailed);
    auto info = std::make_shared<KorelClusterInfo>();
    info->enabled = current->enabled;
    info->nodeUuid = "node";
    info->maintenanceState = "OFF";
    return info;
  }
  void SetFaultDomainName(Given name) override { Record(__func__, name); }
  void ResetFaultDomain() override { Record(__func__); }
  std::string GetFaultDomainName() override { return Answer(std::string("fd1"), __func__); }
  void AddCapacityFlashTag(Given device) override { Record(__func__, device); }
  void AddKorelDirectTag(Given device) override { Record(__func__, device); }
  void RemoveCapacityFlashTag(Given device) override { Record(__func__, device); }
  void RemoveKorelDirectTag(Given device) override { Record(__func__, device); }
  void ClearDefaultPolicies() override { Record(__func__); }
  Texts GetJoinedClusterUuids() override { return Answer(current->joinedClusters, __func__); }
  std::string GetClusterUuid() override { return Answer(current->clusterUuid, __func__); }
  std::string GetDatastoreName(Given uuid) override {
    return Answer(std::string("name of " + Text(uuid)), __func__, uuid);
  }
  void SetDatastoreName(Given uuid, Given name) override { Record(__func__, uuid, name); }
  void AddDatastore(const KorelDatastore& datastore) override { Record(__func__, datastore); }
  void RemoveDatastore(Given uuid) override { Record(__func__, uuid); }
  std::vector<std::shared_ptr<KorelDatastore>> GetDatastores() override {
    Record(__func__);
    std::vector<std::shared_ptr<KorelDatastore>> answer;
    for (const auto& one : current->datastores) {
      answer.push_back(std::make_shared<KorelDatastore>(one));
    }
    return answer;
  }
  bool IsHsknicConfigured(Given name, Given type) override {
    return Answer(current->configured.contains(name + " " + type), __func__, name, type);
  }
  void ListDiskUuids(std::vector<Uuid>& uuids) override {
    Record(__func__);
    for (const auto& text : current->configuredDisks) {
      uuids.push_back(HskCtl::Korel::KorelUtil::StringToKorelUuid(text));
    }
  }
  std::string GetDefaultPolicy(KorelPolicyClass policyClass) override {
    return Answer(std::string("value " + Text(policyClass)), __func__, policyClass);
  }
  void GetUnicastAgents(std::vector<KorelUnicastAddressInfo>& agents, bool all,
                        Given cluster) override {
    Record(__func__, all, cluster);
    agents.insert(agents.end(), current->agents.begin(), current->agents.end());
  }
  std::int64_t GetResyncThrottle() override { return Answer(current->number, __func__); }
  void SetResyncThrottle(std::int64_t mbps) override { Record(__func__, mbps); }
  std::int64_t GetResyncBandwidth() override { return Answer(current->number, __func__); }
  bool IsDataInTransitEncryptionEnabled(Given cluster, bool ask) override {
    return Answer(current->encryption, __func__, cluster, ask);
  }
  void SetDataInTransitEncryption(Given cluster, bool enabled, Given state, int reserved) override {
    Record(__func__, cluster, enabled, state, reserved);
  }
  std::int64_t GetRekeyInterval(Given cluster, bool ask) override {
    return Answer(current->number, __func__, cluster, ask);
  }
  void SetRekeyInterval(Given cluster, std::int64_t minutes) override {
    Record(__func__, cluster, minutes);
  }
  bool IsClientModeEnabled() override { return Answer(current->clientMode, __func__); }
  void SetKorelMaxEnabled(bool enabled) override { Record(__func__, enabled); }
};

class RecordingPlugin : public Tovrin::Lib::Korel::KorelPlugin {
 public:
  std::unique_ptr<KorelInfo> GetKorelInfo() override {
    if (!current->hasInfo) return nullptr;
    return std::make_unique<RecordingKorelInfo>();
  }
};

}  // namespace

RecordingHost::RecordingHost() { current = this; }
RecordingHost::~RecordingHost() { current = nullptr; }

}  // namespace test

using test::Answer;
using test::current;
using test::Given;
using test::Record;

namespace Tovrin::Lib::Korel {
std::unique_ptr<KorelPlugin> KorelPluginFactory::GetKorelPlugin() {
  return std::make_unique<test::RecordingPlugin>();
}
}  // namespace Tovrin::Lib::Korel

namespace HskCtl::Korel {

Tovrin::Korel::KorelNodeType KorelUtil::GetNodeType() {
  return Answer(current->nodeType, __func__);
}

void KorelUtil::DecomCancel() { Record(__func__); }
std::string KorelUtil::GetFaultDomainId() { return Answer(std::string("id1"), __func__); }
std::string KorelUtil::GetFormattedSystemDateTime() { return Answer(std::string("now"), __func__); }

void KorelUtil::GetInfoFromHXDS(Given cluster, Tovrin::Korel::KorelClusterInfoDetailed& info) {
  Record(__func__, cluster);
  info = current->cluster;
}

void KorelUtil::GetPreferredFaultDomainInfo(Given cluster, std::string& name, std::string& id) {
  Record(__func__, cluster);
  name = current->preferred[cluster];
  id = "id of " + name;
}

void KorelUtil::GetUnicastModeForCluster(bool& isUnicast, const std::string& cluster) {
  Record(__func__, cluster);
  isUnicast = true;
}

void KorelUtil::GetKorelStoragePoolDiskInfo(const Uuid& disk, const KorelDiskList& disks,
                                            bool fromCluster,
                                            Tovrin::Korel::KorelStoragePoolDiskInfo& info) {
  Record(__func__, disk, fromCluster);
  for (const auto& lun : disks) {
    if (lun->GetUuid() == disk) info.deviceName = lun->GetName();
  }
  info.korelUuid = KorelUuidToString(disk);
  info.isSsd = true;
  info.capacityBytes = 7;
  if (info.deviceName != current->usedPoolDisk) return;
  info.isUsedByThisHost = true;
  info.onDiskFormatVersion = 20;
  info.creationTime = "now";
}

bool KorelUtil::IsStoragePoolDisk(const std::string& device) {
  return Answer(current->poolDisks.contains(device), __func__, device);
}

std::vector<KorelUtil::KorelPolicyClass> KorelUtil::GetKorelPolicyClasses() {
  return Answer(current->policyClasses, __func__);
}

bool KorelUtil::IsInStretchedCluster() { return Answer(current->stretched, __func__); }

bool KorelUtil::IsKorelMetadataNodeFeatureEnabled() {
  return Answer(current->metadataFeature, __func__);
}

bool KorelUtil::IsKorelRebuildTrimFssEnabled() { return Answer(current->trimFeature, __func__); }

void KorelUtil::SetTracedLogOptions(const std::unordered_map<std::string, std::string>& options) {
  const std::map<std::string, std::string> sorted(options.begin(), options.end());
  std::vector<std::string> pairs;
  for (const auto& [key, value] : sorted) pairs.push_back(key + "=" + value);
  Record(__func__, pairs);
}

int KorelUtil::KorelExec(const std::string& path, const std::string& arguments, bool inShell,
                         bool wait, bool showOutput) {
  return Answer(arguments == "restart" ? current->restarted : current->status, __func__, path,
                arguments, inShell, wait, showOutput);
}

KorelUtil::KorelInfo::KorelUnicastAddressInfo KorelUtil::KorelUnicastAddressInfoFromString(
    const std::string& text, bool) {
  if (text.starts_with("bad")) throw Tovrin::Lib::Korel::KorelCtlException("cannot read it");
  KorelInfo::KorelUnicastAddressInfo agent;
  agent.nodeUuid = "stored";
  agent.address = text;
  return agent;
}

void KorelUtil::GetKorelDisks(KorelDiskList& disks, Tovrin::Korel::KorelDiskTypes types) {
  Record(__func__, types);
  disks.clear();
  for (const auto& [name, uuid] : current->disks) {
    disks.push_back(std::make_shared<Tovrin::Korel::KorelDiskLun>(StringToKorelUuid(uuid), name));
  }
}

}  // namespace HskCtl::Korel

bool FeatureList::IsEnabled(Feature feature) {
  return Answer(current->clientModeFeature, "IsFeatureEnabled", feature);
}

char* UUID_CreateRandom() {
  Record(__func__);
  return current->randomUuid.empty() ? nullptr : strdup(current->randomUuid.c_str());
}
