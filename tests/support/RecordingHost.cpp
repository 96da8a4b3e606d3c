#include "tests/support/RecordingHost.h"

#include <cstdlib>
#include <cstring>

#include "platform/autocli/AutoCli.h"
#include "platform/base/FeatureList.h"
#include "platform/base/Uuid.h"
#include "platform/hostctl/Misc.h"

namespace test {
namespace {

using namespace Tovrin::Korel;

RecordingHost* current = nullptr;

std::string Text(const std::string& text) { return text.empty() ? "\"\"" : text; }
std::string Text(bool value) { return value ? "true" : "false"; }
std::string Text(int value) { return std::to_string(value); }
std::string Text(std::int64_t value) { return std::to_string(value); }
std::string Text(KorelNodeType type) { return std::to_string(static_cast<int>(type)); }
std::string Text(KorelUnicastAgentType type) { return std::to_string(static_cast<int>(type)); }
std::string Text(KorelDiskTypes types) { return std::to_string(static_cast<int>(types)); }
std::string Text(const Uuid& uuid) { return HskCtl::Korel::KorelUtil::KorelUuidToString(uuid); }
std::string Text(const KorelDatastore& datastore) {
  return Text(datastore.GetUuid()) + " " + Text(datastore.GetName()) + " " +
         Text(datastore.GetClusterUuid()) + " " + Text(datastore.IsDefault());
}
std::string Text(const std::vector<std::string>& texts) {
  std::string joined = "[";
  for (const auto& text : texts) joined += (joined.size() > 1 ? "," : "") + text;
  return joined + "]";
}

template <typename... Arguments>
void Record(const std::string& operation, const Arguments&... arguments) {
  std::string line = operation;
  ((line += " " + Text(arguments)), ...);
  current->calls.push_back(line);
  const auto failure = current->failures.find(operation);
  if (failure != current->failures.end()) {
    throw Tovrin::Lib::Korel::KorelCtlException(failure->second);
  }
}

class RecordingKorelInfo : public KorelInfo {
 public:
  void SetHsknicConfig(const KorelHskNicConfig2& config) override {
    const auto group = [](const KorelIpAddress& one) { return (one.isV6 ? "v6:" : "") + one.text; };
    Record("SetHsknicConfig", config.GetHsknicName(), group(config.GetAgentMulticastGroup()),
           group(config.GetAgentV6MulticastGroup()), group(config.GetPrimaryMulticastGroup()),
           group(config.GetPrimaryV6MulticastGroup()), config.GetAgentMulticastPort(),
           config.GetPrimaryMulticastPort(), config.GetHostUnicastPort(), config.GetMulticastTTL(),
           config.korelTraffic, config.witnessTraffic, config.GetExtra());
  }
  std::vector<std::unique_ptr<KorelHskNicConfig2>> GetHsknicConfigs() override {
    Record("GetHsknicConfigs");
    std::vector<std::unique_ptr<KorelHskNicConfig2>> answer;
    for (const auto& one : current->interfaces) {
      answer.push_back(std::make_unique<KorelHskNicConfig2>(one));
    }
    return answer;
  }
  void GetDiskInfo(const Uuid& disk, const KorelDiskList& disks, KorelDiskInfo& info) override {
    Record("GetDiskInfo", disk);
    info = current->diskInfo;
    info.korelUuid = Text(disk);
    for (const auto& lun : disks) {
      if (lun->GetUuid() == disk) info.deviceName = lun->GetName();
    }
  }
  void AddDisks(const std::string& ssd, const std::vector<std::string>& disks) override {
    Record("AddDisks", ssd, disks);
  }
  void MountDiskGroup(const std::string& ssd, bool force) override {
    Record("MountDiskGroup", ssd, force);
  }
  void MountDiskByUuid(const std::string& uuid) override { Record("MountDiskByUuid", uuid); }
  void MountDisk(const std::string& device) override { Record("MountDisk", device); }
  void RemoveDisk(const std::string& device, const std::string& mode) override {
    Record("RemoveDisk", device, mode);
  }
  void RemoveDiskGroup(const std::string& ssd, const std::string& mode) override {
    Record("RemoveDiskGroup", ssd, mode);
  }
  void RebuildDiskGroup(const std::string& ssd, const std::string& mode, int trim, bool force,
                        std::vector<std::string>& skipped) override {
    Record("RebuildDiskGroup", ssd, mode, trim, force);
    skipped = current->skippedDisks;
  }
  void RebuildDiskGroupByUuid(const std::string& uuid, const std::string& mode, int trim,
                              bool force, std::vector<std::string>& skipped) override {
    Record("RebuildDiskGroupByUuid", uuid, mode, trim, force);
    skipped = current->skippedDisks;
  }
  void UnmountDiskGroupWithMode(const std::string& ssd, const std::string& mode) override {
    Record("UnmountDiskGroupWithMode", ssd, mode);
  }
  void UnmountDiskGroup(const std::string& ssd, bool force) override {
    Record("UnmountDiskGroup", ssd, force);
  }
  void UnmountDisk(const std::string& device, bool force) override {
    Record("UnmountDisk", device, force);
  }
  void UnmountDiskByUuid(const std::string& uuid) override { Record("UnmountDiskByUuid", uuid); }
  void RemoveDiskByUuid(const std::string& uuid, const std::string& mode) override {
    Record("RemoveDiskByUuid", uuid, mode);
  }
  void SetPreferredFaultDomain(const std::string& name, const std::string& cluster) override {
    Record("SetPreferredFaultDomain", name, cluster);
  }
  void RemoveHsknic(const std::string& name, bool force, const std::string& type) override {
    Record("RemoveHsknic", name, force, type);
  }
  void RefreshUnicastAgents(const std::string& text) override {
    Record("RefreshUnicastAgents", text);
  }
  void AddUnicastAgent(const std::string& uuid, KorelUnicastAgentType type, bool unicast,
                       const std::string& address, std::int64_t port, bool bound,
                       const std::string& name, const std::string& reserved,
                       const std::string& thumbprint, const std::string& cluster) override {
    Record("AddUnicastAgent", uuid, type, unicast, address, port, bound, name, reserved, thumbprint,
           cluster);
  }
  bool RemoveUnicastAgent(const std::string& uuid, const std::string& address, std::int64_t port,
                          KorelUnicastAgentType type, int reserved, const std::string& cluster,
                          bool client) override {
    Record("RemoveUnicastAgent", uuid, address, port, type, reserved, cluster, client);
    return current->agentRemoved;
  }
  std::vector<std::string> GetUnicastAgentEntries(const std::string& cluster) override {
    Record("GetUnicastAgentEntries", cluster);
    return current->agentEntries;
  }
  std::vector<std::string> GetUnicastWitnesses() override {
    Record("GetUnicastWitnesses");
    return current->witnesses;
  }
  void RestoreNetworkConfig() override { Record("RestoreNetworkConfig"); }
  void RestoreCluster(bool boot, bool postboot) override {
    Record("RestoreCluster", boot, postboot);
  }
  void ClearNetworkConfig() override { Record("ClearNetworkConfig"); }
  void ClearDatastores() override { Record("ClearDatastores"); }
  void JoinCluster(const Uuid& cluster, KorelNodeType type, const std::string& preferred, bool wait,
                   int reserved1, int reserved2) override {
    Record("JoinCluster", cluster, type, preferred, wait, reserved1, reserved2);
  }
  void CreateCluster(const std::string& cluster, bool persist, bool wait) override {
    Record("CreateCluster", cluster, persist, wait);
  }
  void JoinClientCluster(const std::string& cluster, bool wait) override {
    Record("JoinClientCluster", cluster, wait);
  }
  void LeaveCluster(const Uuid& cluster, bool wait) override {
    Record("LeaveCluster", cluster, wait);
  }
  std::shared_ptr<KorelClusterInfo> GetClusterInfo(bool detailed) override {
    Record("GetClusterInfo", detailed);
    auto info = std::make_shared<KorelClusterInfo>();
    info->enabled = current->enabled;
    info->nodeUuid = "node";
    info->maintenanceState = "OFF";
    return info;
  }
  void SetFaultDomainName(const std::string& name) override { Record("SetFaultDomainName", name); }
  void ResetFaultDomain() override { Record("ResetFaultDomain"); }
  std::string GetFaultDomainName() override {
    Record("GetFaultDomainName");
    return "fd1";
  }
  void AddCapacityFlashTag(const std::string& device) override {
    Record("AddCapacityFlashTag", device);
  }
  void AddKorelDirectTag(const std::string& device) override {
    Record("AddKorelDirectTag", device);
  }
  void RemoveCapacityFlashTag(const std::string& device) override {
    Record("RemoveCapacityFlashTag", device);
  }
  void RemoveKorelDirectTag(const std::string& device) override {
    Record("RemoveKorelDirectTag", device);
  }
  void ClearDefaultPolicies() override { Record("ClearDefaultPolicies"); }
  std::vector<std::string> GetJoinedClusterUuids() override {
    Record("GetJoinedClusterUuids");
    return current->joinedClusters;
  }
  std::string GetClusterUuid() override {
    Record("GetClusterUuid");
    return current->clusterUuid;
  }
  std::string GetDatastoreName(const std::string& uuid) override {
    Record("GetDatastoreName", uuid);
    return "name of " + Text(uuid);
  }
  void SetDatastoreName(const std::string& uuid, const std::string& name) override {
    Record("SetDatastoreName", uuid, name);
  }
  void AddDatastore(const KorelDatastore& datastore) override { Record("AddDatastore", datastore); }
  void RemoveDatastore(const std::string& uuid) override { Record("RemoveDatastore", uuid); }
  std::vector<std::shared_ptr<KorelDatastore>> GetDatastores() override {
    Record("GetDatastores");
    std::vector<std::shared_ptr<KorelDatastore>> answer;
    for (const auto& one : current->datastores) {
      answer.push_back(std::make_shared<KorelDatastore>(one));
    }
    return answer;
  }
  bool IsHsknicConfigured(const std::string& name, const std::string& type) override {
    Record("IsHsknicConfigured", name, type);
    return current->configured.contains(name + " " + type);
  }
  void ListDiskUuids(std::vector<Uuid>& uuids) override {
    Record("ListDiskUuids");
    for (const auto& text : current->configuredDisks) {
      uuids.push_back(HskCtl::Korel::KorelUtil::StringToKorelUuid(text));
    }
  }
  std::string GetDefaultPolicy(KorelPolicyClass policyClass) override {
    Record("GetDefaultPolicy", static_cast<int>(policyClass));
    return "value " + Text(static_cast<int>(policyClass));
  }
  void GetUnicastAgents(std::vector<KorelUnicastAddressInfo>& agents, bool all,
                        const std::string& cluster) override {
    Record("GetUnicastAgents", all, cluster);
    agents.insert(agents.end(), current->agents.begin(), current->agents.end());
  }
  std::int64_t GetResyncThrottle() override {
    Record("GetResyncThrottle");
    return current->number;
  }
  void SetResyncThrottle(std::int64_t mbps) override { Record("SetResyncThrottle", mbps); }
  std::int64_t GetResyncBandwidth() override {
    Record("GetResyncBandwidth");
    return current->number;
  }
  bool IsDataInTransitEncryptionEnabled(const std::string& cluster, bool ask) override {
    Record("IsDataInTransitEncryptionEnabled", cluster, ask);
    return current->encryption;
  }
  void SetDataInTransitEncryption(const std::string& cluster, bool enabled,
                                  const std::string& state, int reserved) override {
    Record("SetDataInTransitEncryption", cluster, enabled, state, reserved);
  }
  std::int64_t GetRekeyInterval(const std::string& cluster, bool ask) override {
    Record("GetRekeyInterval", cluster, ask);
    return current->number;
  }
  void SetRekeyInterval(const std::string& cluster, std::int64_t minutes) override {
    Record("SetRekeyInterval", cluster, minutes);
  }
  bool IsClientModeEnabled() override {
    Record("IsClientModeEnabled");
    return current->clientMode;
  }
  void SetKorelMaxEnabled(bool enabled) override { Record("SetKorelMaxEnabled", enabled); }
  void SetDefaultPolicy(KorelPolicyClass policyClass, const std::string& value) override {
    Record("SetDefaultPolicy", static_cast<int>(policyClass), value);
  }
  void AddStoragePoolDisks(const std::vector<std::string>& devices) override {
    Record("AddStoragePoolDisks", devices);
  }
  void RemoveStoragePoolDisk(const std::string& device, const std::string& mode) override {
    Record("RemoveStoragePoolDisk", device, mode);
  }
  void RemoveStoragePoolDiskByUuid(const std::string& uuid, const std::string& mode) override {
    Record("RemoveStoragePoolDiskByUuid", uuid, mode);
  }
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

using test::current;
using test::Record;

namespace Tovrin::Lib::Korel {
std::unique_ptr<KorelPlugin> KorelPluginFactory::GetKorelPlugin() {
  return std::make_unique<test::RecordingPlugin>();
}
}  // namespace Tovrin::Lib::Korel

namespace HskCtl::Korel {

Tovrin::Korel::KorelNodeType KorelUtil::GetNodeType() {
  Record("GetNodeType");
  return current->nodeType;
}

void KorelUtil::DecomCancel() { Record("DecomCancel"); }

std::string KorelUtil::GetFaultDomainId() {
  Record("GetFaultDomainId");
  return "id1";
}

std::string KorelUtil::GetFormattedSystemDateTime() {
  Record("GetFormattedSystemDateTime");
  return "now";
}

void KorelUtil::GetInfoFromHXDS(const std::string& cluster,
                                Tovrin::Korel::KorelClusterInfoDetailed& info) {
  Record("GetInfoFromHXDS", cluster);
  info = current->cluster;
}

void KorelUtil::GetPreferredFaultDomainInfo(const std::string& cluster, std::string& name,
                                            std::string& id) {
  Record("GetPreferredFaultDomainInfo", cluster);
  name = current->preferred[cluster];
  id = "id of " + name;
}

void KorelUtil::GetUnicastModeForCluster(bool& isUnicast, const std::string& cluster) {
  Record("GetUnicastModeForCluster", cluster);
  isUnicast = true;
}

void KorelUtil::GetKorelStoragePoolDiskInfo(const Uuid& disk, const KorelDiskList& disks,
                                            bool fromCluster,
                                            Tovrin::Korel::KorelStoragePoolDiskInfo& info) {
  Record("GetKorelStoragePoolDiskInfo", disk, fromCluster);
  for (const auto& lun : disks) {
    if (lun->GetUuid() == disk) info.deviceName = lun->GetName();
  }
  info.korelUuid = KorelUuidToString(disk);
  info.isSsd = true;
  info.capacityBytes = 7;
}

bool KorelUtil::IsStoragePoolDisk(const std::string& device) {
  Record("IsStoragePoolDisk", device);
  return current->poolDisks.contains(device);
}

bool KorelUtil::IsInStretchedCluster() {
  Record("IsInStretchedCluster");
  return current->stretched;
}

bool KorelUtil::IsKorelMetadataNodeFeatureEnabled() {
  Record("IsKorelMetadataNodeFeatureEnabled");
  return current->metadataFeature;
}

bool KorelUtil::IsKorelRebuildTrimFssEnabled() {
  Record("IsKorelRebuildTrimFssEnabled");
  return current->trimFeature;
}

void KorelUtil::SetTracedLogOptions(const std::unordered_map<std::string, std::string>& options) {
  const std::map<std::string, std::string> sorted(options.begin(), options.end());
  std::vector<std::string> pairs;
  for (const auto& [key, value] : sorted) pairs.push_back(key + "=" + value);
  Record("SetTracedLogOptions", pairs);
}

int KorelUtil::KorelExec(const std::string& path, const std::string& arguments, bool inShell,
                         bool wait, bool showOutput) {
  Record("KorelExec", path, arguments, inShell, wait, showOutput);
  return arguments == "restart" ? current->restarted : current->status;
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
  Record("GetKorelDisks", types);
  disks.clear();
  for (const auto& [name, uuid] : current->disks) {
    disks.push_back(std::make_shared<Tovrin::Korel::KorelDiskLun>(StringToKorelUuid(uuid), name));
  }
}

}  // namespace HskCtl::Korel

std::string Tovrin::Misc::HostPath(const std::string& path) { return current->root + path; }

int Corvex::AutoCli::AutoCli_ShellCmd(const std::string& line, std::string&, const std::string&) {
  current->calls.push_back("[" + line + "]");
  return 0;
}

bool FeatureList::IsEnabled(Feature feature) {
  Record("IsFeatureEnabled", static_cast<int>(feature));
  return current->clientModeFeature;
}

char* UUID_CreateRandom() {
  Record("UUID_CreateRandom");
  return current->randomUuid.empty() ? nullptr : strdup(current->randomUuid.c_str());
}
