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

template <typename Value, typename... Arguments>
Value Answer(const Value& value, const std::string& operation, const Arguments&... arguments) {
  Record(operation, arguments...);
  return value;
}

/// A text that an operation is given.
using Given = const std::string&;

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
  void AddDisks(Given ssd, const std::vector<std::string>& disks) override {
    Record("AddDisks", ssd, disks);
  }
  void MountDiskGroup(Given ssd, bool force) override { Record("MountDiskGroup", ssd, force); }
  void MountDiskByUuid(Given uuid) override { Record("MountDiskByUuid", uuid); }
  void MountDisk(Given device) override { Record("MountDisk", device); }
  void RemoveDisk(Given device, Given mode) override { Record("RemoveDisk", device, mode); }
  void RemoveDiskGroup(Given ssd, Given mode) override { Record("RemoveDiskGroup", ssd, mode); }
  void RebuildDiskGroup(Given ssd, Given mode, int trim, bool force,
                        std::vector<std::string>& skipped) override {
    Record("RebuildDiskGroup", ssd, mode, trim, force);
    skipped = current->skippedDisks;
  }
  void RebuildDiskGroupByUuid(Given uuid, Given mode, int trim, bool force,
                              std::vector<std::string>& skipped) override {
    Record("RebuildDiskGroupByUuid", uuid, mode, trim, force);
    skipped = current->skippedDisks;
  }
  void UnmountDiskGroupWithMode(Given ssd, Given mode) override {
    Record("UnmountDiskGroupWithMode", ssd, mode);
  }
  void UnmountDiskGroup(Given ssd, bool force) override { Record("UnmountDiskGroup", ssd, force); }
  void UnmountDisk(Given device, bool force) override { Record("UnmountDisk", device, force); }
  void UnmountDiskByUuid(Given uuid) override { Record("UnmountDiskByUuid", uuid); }
  void RemoveDiskByUuid(Given uuid, Given mode) override { Record("RemoveDiskByUuid", uuid, mode); }
  void SetPreferredFaultDomain(Given name, Given cluster) override {
    Record("SetPreferredFaultDomain", name, cluster);
  }
  void RemoveHsknic(Given name, bool force, Given type) override {
    Record("RemoveHsknic", name, force, type);
  }
  void RefreshUnicastAgents(Given text) override { Record("RefreshUnicastAgents", text); }
  void AddUnicastAgent(Given uuid, KorelUnicastAgentType type, bool unicast, Given address,
                       std::int64_t port, bool bound, Given name, Given reserved, Given thumbprint,
                       Given cluster) override {
    Record("AddUnicastAgent", uuid, type, unicast, address, port, bound, name, reserved, thumbprint,
           cluster);
  }
  bool RemoveUnicastAgent(Given uuid, Given address, std::int64_t port, KorelUnicastAgentType type,
                          int reserved, Given cluster, bool client) override {
    return Answer(current->agentRemoved, "RemoveUnicastAgent", uuid, address, port, type, reserved,
                  cluster, client);
  }
  std::vector<std::string> GetUnicastAgentEntries(Given cluster) override {
    return Answer(current->agentEntries, "GetUnicastAgentEntries", cluster);
  }
  std::vector<std::string> GetUnicastWitnesses() override {
    return Answer(current->witnesses, "GetUnicastWitnesses");
  }
  void RestoreNetworkConfig() override { Record("RestoreNetworkConfig"); }
  void RestoreCluster(bool boot, bool postboot) override {
    Record("RestoreCluster", boot, postboot);
  }
  void ClearNetworkConfig() override { Record("ClearNetworkConfig"); }
  void ClearDatastores() override { Record("ClearDatastores"); }
  void JoinCluster(const Uuid& cluster, KorelNodeType type, Given preferred, bool wait,
                   int reserved1, int reserved2) override {
    Record("JoinCluster", cluster, type, preferred, wait, reserved1, reserved2);
  }
  void CreateCluster(Given cluster, bool persist, bool wait) override {
    Record("CreateCluster", cluster, persist, wait);
  }
  void JoinClientCluster(Given cluster, bool wait) override {
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
  void SetFaultDomainName(Given name) override { Record("SetFaultDomainName", name); }
  void ResetFaultDomain() override { Record("ResetFaultDomain"); }
  std::string GetFaultDomainName() override {
    return Answer(std::string("fd1"), "GetFaultDomainName");
  }
  void AddCapacityFlashTag(Given device) override { Record("AddCapacityFlashTag", device); }
  void AddKorelDirectTag(Given device) override { Record("AddKorelDirectTag", device); }
  void RemoveCapacityFlashTag(Given device) override { Record("RemoveCapacityFlashTag", device); }
  void RemoveKorelDirectTag(Given device) override { Record("RemoveKorelDirectTag", device); }
  void ClearDefaultPolicies() override { Record("ClearDefaultPolicies"); }
  std::vector<std::string> GetJoinedClusterUuids() override {
    return Answer(current->joinedClusters, "GetJoinedClusterUuids");
  }
  std::string GetClusterUuid() override { return Answer(current->clusterUuid, "GetClusterUuid"); }
  std::string GetDatastoreName(Given uuid) override {
    return Answer(std::string("name of " + Text(uuid)), "GetDatastoreName", uuid);
  }
  void SetDatastoreName(Given uuid, Given name) override { Record("SetDatastoreName", uuid, name); }
  void AddDatastore(const KorelDatastore& datastore) override { Record("AddDatastore", datastore); }
  void RemoveDatastore(Given uuid) override { Record("RemoveDatastore", uuid); }
  std::vector<std::shared_ptr<KorelDatastore>> GetDatastores() override {
    Record("GetDatastores");
    std::vector<std::shared_ptr<KorelDatastore>> answer;
    for (const auto& one : current->datastores) {
      answer.push_back(std::make_shared<KorelDatastore>(one));
    }
    return answer;
  }
  bool IsHsknicConfigured(Given name, Given type) override {
    return Answer(current->configured.contains(name + " " + type), "IsHsknicConfigured", name,
                  type);
  }
  void ListDiskUuids(std::vector<Uuid>& uuids) override {
    Record("ListDiskUuids");
    for (const auto& text : current->configuredDisks) {
      uuids.push_back(HskCtl::Korel::KorelUtil::StringToKorelUuid(text));
    }
  }
  std::string GetDefaultPolicy(KorelPolicyClass policyClass) override {
    return Answer(std::string("value " + Text(static_cast<int>(policyClass))), "GetDefaultPolicy",
                  static_cast<int>(policyClass));
  }
  void GetUnicastAgents(std::vector<KorelUnicastAddressInfo>& agents, bool all,
                        Given cluster) override {
    Record("GetUnicastAgents", all, cluster);
    agents.insert(agents.end(), current->agents.begin(), current->agents.end());
  }
  std::int64_t GetResyncThrottle() override { return Answer(current->number, "GetResyncThrottle"); }
  void SetResyncThrottle(std::int64_t mbps) override { Record("SetResyncThrottle", mbps); }
  std::int64_t GetResyncBandwidth() override {
    return Answer(current->number, "GetResyncBandwidth");
  }
  bool IsDataInTransitEncryptionEnabled(Given cluster, bool ask) override {
    return Answer(current->encryption, "IsDataInTransitEncryptionEnabled", cluster, ask);
  }
  void SetDataInTransitEncryption(Given cluster, bool enabled, Given state, int reserved) override {
    Record("SetDataInTransitEncryption", cluster, enabled, state, reserved);
  }
  std::int64_t GetRekeyInterval(Given cluster, bool ask) override {
    return Answer(current->number, "GetRekeyInterval", cluster, ask);
  }
  void SetRekeyInterval(Given cluster, std::int64_t minutes) override {
    Record("SetRekeyInterval", cluster, minutes);
  }
  bool IsClientModeEnabled() override { return Answer(current->clientMode, "IsClientModeEnabled"); }
  void SetKorelMaxEnabled(bool enabled) override { Record("SetKorelMaxEnabled", enabled); }
  void SetDefaultPolicy(KorelPolicyClass policyClass, Given value) override {
    Record("SetDefaultPolicy", static_cast<int>(policyClass), value);
  }
  void AddStoragePoolDisks(const std::vector<std::string>& devices) override {
    Record("AddStoragePoolDisks", devices);
  }
  void RemoveStoragePoolDisk(Given device, Given mode) override {
    Record("RemoveStoragePoolDisk", device, mode);
  }
  void RemoveStoragePoolDiskByUuid(Given uuid, Given mode) override {
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

using test::Answer;
using test::current;
using test::Record;

namespace Tovrin::Lib::Korel {
std::unique_ptr<KorelPlugin> KorelPluginFactory::GetKorelPlugin() {
  return std::make_unique<test::RecordingPlugin>();
}
}  // namespace Tovrin::Lib::Korel

namespace HskCtl::Korel {

Tovrin::Korel::KorelNodeType KorelUtil::GetNodeType() {
  return Answer(current->nodeType, "GetNodeType");
}

void KorelUtil::DecomCancel() { Record("DecomCancel"); }

std::string KorelUtil::GetFaultDomainId() { return Answer(std::string("id1"), "GetFaultDomainId"); }

std::string KorelUtil::GetFormattedSystemDateTime() {
  return Answer(std::string("now"), "GetFormattedSystemDateTime");
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
  return Answer(current->poolDisks.contains(device), "IsStoragePoolDisk", device);
}

bool KorelUtil::IsInStretchedCluster() {
  return Answer(current->stretched, "IsInStretchedCluster");
}

bool KorelUtil::IsKorelMetadataNodeFeatureEnabled() {
  return Answer(current->metadataFeature, "IsKorelMetadataNodeFeatureEnabled");
}

bool KorelUtil::IsKorelRebuildTrimFssEnabled() {
  return Answer(current->trimFeature, "IsKorelRebuildTrimFssEnabled");
}

void KorelUtil::SetTracedLogOptions(const std::unordered_map<std::string, std::string>& options) {
  const std::map<std::string, std::string> sorted(options.begin(), options.end());
  std::vector<std::string> pairs;
  for (const auto& [key, value] : sorted) pairs.push_back(key + "=" + value);
  Record("SetTracedLogOptions", pairs);
}

int KorelUtil::KorelExec(const std::string& path, const std::string& arguments, bool inShell,
                         bool wait, bool showOutput) {
  return Answer(arguments == "restart" ? current->restarted : current->status, "KorelExec", path,
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
  return Answer(current->clientModeFeature, "IsFeatureEnabled", static_cast<int>(feature));
}

char* UUID_CreateRandom() {
  Record("UUID_CreateRandom");
  return current->randomUuid.empty() ? nullptr : strdup(current->randomUuid.c_str());
}
