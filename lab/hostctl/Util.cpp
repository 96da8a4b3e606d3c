#include <algorithm>
#include <array>
#include <ctime>

#include "lab/common/Uuids.h"
#include "lab/hostctl/Call.h"
#include "lab/hostctl/Records.h"
#include "lab/model/Clusters.h"
#include "lab/model/Disks.h"
#include "lab/model/Features.h"
#include "lab/model/StoragePool.h"
#include "lab/model/Trace.h"
#include "lab/model/TraceDaemon.h"
#include "platform/base/FeatureList.h"
#include "platform/hostctl/KorelUtil.h"

using namespace Tovrin::Korel;
using lab::Arguments;
using lab::Call;
using lab::Number;

namespace {

template <typename AskArguments>
bool AskFeature(lab::OperationName operation, const AskArguments& arguments,
                std::string_view name) {
  return Call(operation, arguments, [&](lab::Store& store, const lab::Host&) {
    return lab::IsFeatureEnabled(store, name);
  });
}

std::string_view NameOf(KORELFeature feature) {
  switch (feature) {
    case KORELFeature::ClientMode:
      return "client-mode";
    case KORELFeature::RebuildTrim:
      return "rebuild-trim";
    case KORELFeature::MetadataNode:
      return "metadata-node";
    case KORELFeature::Korel2Config:
      return "korel2-config";
    case KORELFeature::ArchivalProtection:
      return "archival-protection";
  }
  return "";
}

}  // namespace

bool FeatureList::IsEnabled(Feature feature) {
  return AskFeature("IsFeatureEnabled", Arguments(Number(feature)),
                    feature == Feature::ClientMode ? "client-mode" : "");
}

namespace HskCtl::Korel {

bool KorelUtil::IsKorel2ConfigFssEnabled() {
  return AskFeature("IsKorel2ConfigFssEnabled", Arguments(), "korel2-config");
}

bool KorelUtil::IsKorelDpArchivalProtectionFeatureEnabled() {
  return AskFeature("IsKorelDpArchivalProtectionFeatureEnabled", Arguments(),
                    "archival-protection");
}

bool KorelUtil::IsKorelMetadataNodeFeatureEnabled() {
  return AskFeature("IsKorelMetadataNodeFeatureEnabled", Arguments(), "metadata-node");
}

bool KorelUtil::IsKorelRebuildTrimFssEnabled() {
  return AskFeature("IsKorelRebuildTrimFssEnabled", Arguments(), "rebuild-trim");
}

bool KorelUtil::IsKorelFeatureEnabled(KORELFeature feature) {
  return AskFeature("IsKorelFeatureEnabled", Arguments(Number(feature)), NameOf(feature));
}

void KorelUtil::GetKorelDisks(KorelDiskList& disks, KorelDiskTypes types) {
  disks = Call("GetKorelDisks", Arguments(Number(types)),
               [&](lab::Store& store, const lab::Host& host) {
                 KorelDiskList found;
                 for (const lab::Device& device : lab::DevicesOf(store, host)) {
                   if (types == KorelDiskTypes::Claimed && !device.IsInGroup()) continue;
                   found.push_back(
                       std::make_shared<KorelDiskLun>(lab::CheckedUuid(device.uuid), device.name));
                 }
                 return found;
               });
}

void KorelUtil::FetchDiskUuids(const KorelDiskList& disks, std::vector<std::string>& uuids,
                               const std::string& deviceFilter, const std::string& uuidFilter) {
  uuids = Call("FetchDiskUuids", Arguments(disks, deviceFilter, uuidFilter),
               [&](lab::Store&, const lab::Host&) {
                 const Uuid wanted = uuidFilter.empty() ? Uuid{} : lab::CheckedUuid(uuidFilter);
                 std::vector<std::string> found;
                 for (const auto& disk : disks) {
                   if (!deviceFilter.empty() && disk->GetName() != deviceFilter) continue;
                   if (!uuidFilter.empty() && disk->GetUuid() != wanted) continue;
                   found.push_back(lab::UuidText(disk->GetUuid()));
                 }
                 return found;
               });
}

void KorelUtil::FetchKorelDiskIdentifier(const KorelDiskList& disks, const std::string& name,
                                         std::string& identifier) {
  identifier =
      Call("FetchKorelDiskIdentifier", Arguments(disks, name), [&](lab::Store&, const lab::Host&) {
        for (const auto& disk : disks) {
          if (disk->GetName() == name) return lab::UuidText(disk->GetUuid());
        }
        lab::Fail("the host has no device ", lab::Quoted(name));
      });
}

std::string KorelUtil::GetFaultDomainId() {
  return Call("GetFaultDomainId", Arguments(), [](lab::Store&, const lab::Host& host) {
    return lab::FaultDomainId(host.faultDomain);
  });
}

std::string KorelUtil::GetFormattedSystemDateTime() {
  return Call("GetFormattedSystemDateTime", Arguments(),
              [](lab::Store&, const lab::Host&) { return lab::LocalTime(std::time(nullptr)); });
}

KorelNodeType KorelUtil::GetNodeType() { return Call("GetNodeType", Arguments(), lab::NodeTypeOf); }

int KorelUtil::KorelExec(const std::string& path, const std::string& arguments, bool inShell,
                         bool wait, bool showOutput) {
  // A lab host has no programs; the lab knows what the one does that commands run.
  constexpr int kCannotBeRun = -1;
  return Call("KorelExec", Arguments(path, arguments, inShell, wait, showOutput),
              [&](lab::Store& store, const lab::Host& host) {
                if (path != lab::kTraceDaemon) return kCannotBeRun;
                return lab::RunTraceScript(store, host, arguments);
              });
}

void KorelUtil::GetKorelStoragePoolDiskInfo(const Uuid& disk, const KorelDiskList& disks,
                                            bool fromCluster, KorelStoragePoolDiskInfo& info) {
  info = Call("GetKorelStoragePoolDiskInfo", Arguments(disk, disks, fromCluster),
              [&](lab::Store& store, const lab::Host& host) {
                lab::CheckListed(disks, disk);
                return lab::PoolDiskInfo(store, host, lab::UuidText(disk), fromCluster);
              });
}

bool KorelUtil::IsStoragePoolDisk(const std::string& device) {
  return Call("IsStoragePoolDisk", Arguments(device),
              [&](lab::Store& store, const lab::Host& host) {
                return lab::IsPoolDisk(store, host, device);
              });
}

void KorelUtil::SetTracedLogOptions(const std::unordered_map<std::string, std::string>& options) {
  // Sorted, so that equal calls make equal lines.
  const lab::TraceOptions sorted(options.begin(), options.end());
  Call("SetTracedLogOptions", Arguments(sorted), [&](lab::Store& store, const lab::Host& host) {
    lab::SetTraceOptions(store, host, sorted);
  });
}

}  // namespace HskCtl::Korel
