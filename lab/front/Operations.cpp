#include <memory>

#include "lab/commands/Commands.h"
#include "lab/front/Forward.h"
#include "platform/base/FeatureList.h"
#include "platform/base/Uuid.h"
#include "platform/hostctl/KorelUtil.h"
#include "platform/hostctl/Misc.h"
#include "platform/hostctl/Optional.h"

// What needs the lab, as it is called from outside.

using namespace Tovrin::Korel;
using lab::Forward;

lab::CommandPtr lab::NewCommand(const std::string& path) { return Forward(&NewCommand, path); }

std::unique_ptr<Tovrin::Lib::Korel::KorelPlugin>
Tovrin::Lib::Korel::KorelPluginFactory::GetKorelPlugin() {
  return Forward(&GetKorelPlugin);
}

std::string Tovrin::Misc::HostPath(const std::string& path) { return Forward(&HostPath, path); }

namespace Tovrin::Korel {

void SetDefaultPolicy(KorelInfo& info, KorelPolicyClass policyClass, const std::string& value) {
  Forward(&SetDefaultPolicy, info, policyClass, value);
}

void ClearDefaultPolicy(KorelInfo& info, KorelPolicyClass policyClass) {
  Forward(&ClearDefaultPolicy, info, policyClass);
}

std::vector<std::string> GetInactiveClusterUuids(KorelInfo& info) {
  return Forward(&GetInactiveClusterUuids, info);
}

bool IsKorelMaxEnabled(KorelInfo& info) { return Forward(&IsKorelMaxEnabled, info); }

void AddStoragePoolDisks(KorelInfo& info, const std::vector<std::string>& devices) {
  Forward(&AddStoragePoolDisks, info, devices);
}

void RemoveStoragePoolDisk(KorelInfo& info, const std::string& device,
                           const std::string& evacuationMode) {
  Forward(&RemoveStoragePoolDisk, info, device, evacuationMode);
}

void RemoveStoragePoolDiskByUuid(KorelInfo& info, const std::string& uuid,
                                 const std::string& evacuationMode) {
  Forward(&RemoveStoragePoolDiskByUuid, info, uuid, evacuationMode);
}

}  // namespace Tovrin::Korel

bool FeatureList::IsEnabled(Feature feature) { return Forward(&IsEnabled, feature); }

char* UUID_CreateRandom() { return Forward(&UUID_CreateRandom); }

namespace HskCtl::Korel {

void KorelUtil::DecomCancel() { Forward(&DecomCancel); }

void KorelUtil::FetchDiskUuids(const KorelDiskList& disks, std::vector<std::string>& uuids,
                               const std::string& deviceFilter, const std::string& uuidFilter) {
  Forward(&FetchDiskUuids, disks, uuids, deviceFilter, uuidFilter);
}

void KorelUtil::FetchKorelDiskIdentifier(const KorelDiskList& disks, const std::string& name,
                                         std::string& identifier) {
  Forward(&FetchKorelDiskIdentifier, disks, name, identifier);
}

std::string KorelUtil::GetFaultDomainId() { return Forward(&GetFaultDomainId); }

std::string KorelUtil::GetFormattedSystemDateTime() { return Forward(&GetFormattedSystemDateTime); }

void KorelUtil::GetInfoFromHXDS(const std::string& clusterUuid, KorelClusterInfoDetailed& info) {
  Forward(&GetInfoFromHXDS, clusterUuid, info);
}

KorelNodeType KorelUtil::GetNodeType() { return Forward(&GetNodeType); }

void KorelUtil::GetPreferredFaultDomainInfo(const std::string& clusterUuid, std::string& name,
                                            std::string& id) {
  Forward(&GetPreferredFaultDomainInfo, clusterUuid, name, id);
}

void KorelUtil::GetUnicastModeForCluster(bool& isUnicast, const std::string& clusterUuid) {
  Forward(&GetUnicastModeForCluster, isUnicast, clusterUuid);
}

void KorelUtil::GetKorelDisks(KorelDiskList& disks, KorelDiskTypes types) {
  Forward(&GetKorelDisks, disks, types);
}

void KorelUtil::GetKorelStoragePoolDiskInfo(const Uuid& disk, const KorelDiskList& disks,
                                            bool fromCluster, KorelStoragePoolDiskInfo& info) {
  Forward(&GetKorelStoragePoolDiskInfo, disk, disks, fromCluster, info);
}

bool KorelUtil::IsInStretchedCluster() { return Forward(&IsInStretchedCluster); }

bool KorelUtil::IsStoragePoolDisk(const std::string& device) {
  return Forward(&IsStoragePoolDisk, device);
}

bool KorelUtil::IsKorel2ConfigFssEnabled() { return Forward(&IsKorel2ConfigFssEnabled); }

bool KorelUtil::IsKorelDpArchivalProtectionFeatureEnabled() {
  return Forward(&IsKorelDpArchivalProtectionFeatureEnabled);
}

bool KorelUtil::IsKorelMetadataNodeFeatureEnabled() {
  return Forward(&IsKorelMetadataNodeFeatureEnabled);
}

bool KorelUtil::IsKorelRebuildTrimFssEnabled() { return Forward(&IsKorelRebuildTrimFssEnabled); }

bool KorelUtil::IsKorelFeatureEnabled(KORELFeature feature) {
  return Forward(&IsKorelFeatureEnabled, feature);
}

void KorelUtil::SetTracedLogOptions(const std::unordered_map<std::string, std::string>& options) {
  Forward(&SetTracedLogOptions, options);
}

int KorelUtil::KorelExec(const std::string& path, const std::string& arguments, bool inShell,
                         bool wait, bool showOutput) {
  return Forward(&KorelExec, path, arguments, inShell, wait, showOutput);
}

KorelPolicyClass KorelUtil::StringToKorelPolicyClass(const std::string& text) {
  return Forward(&StringToKorelPolicyClass, text);
}

Uuid KorelUtil::StringToKorelUuid(const std::string& text) {
  return Forward(&StringToKorelUuid, text);
}

KorelInfo::KorelUnicastAddressInfo KorelUtil::KorelUnicastAddressInfoFromString(
    const std::string& text, bool strict) {
  return Forward(&KorelUnicastAddressInfoFromString, text, strict);
}

}  // namespace HskCtl::Korel
