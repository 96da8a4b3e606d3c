#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/hostctl/KorelInfo.h"

namespace HskCtl::Korel {

/// Host operations and conversions that need no control interface object. Every one may throw
/// KorelCtlException. Out-parameters are replaced unless said otherwise.
class KorelUtil {
 public:
  using KorelInfo = Tovrin::Korel::KorelInfo;
  using Uuid = Tovrin::Korel::Uuid;
  using KorelDiskList = Tovrin::Korel::KorelDiskList;
  using KorelPolicyClass = Tovrin::Korel::KorelPolicyClass;

  /// Cancels a maintenance-mode operation in progress.
  static void DecomCancel();
  /// UUID texts of the disks that pass the filters; an empty filter passes all.
  static void FetchDiskUuids(const KorelDiskList& disks, std::vector<std::string>& uuids,
                             const std::string& deviceFilter, const std::string& uuidFilter);
  /// The UUID text of the disk of that device name.
  static void FetchKorelDiskIdentifier(const KorelDiskList& disks, const std::string& name,
                                       std::string& identifier);
  /// The id of the host's fault domain: the same for the same name.
  static std::string GetFaultDomainId();
  /// Local time with its offset from UTC, as "2026-01-31T23:59:59+01:00".
  static std::string GetFormattedSystemDateTime();
  /// The cluster as its directory has it.
  static void GetInfoFromHXDS(const std::string& clusterUuid,
                              Tovrin::Korel::KorelClusterInfoDetailed& info);
  static Tovrin::Korel::KorelNodeType GetNodeType();
  /// Name and id are empty when no fault domain is preferred.
  static void GetPreferredFaultDomainInfo(const std::string& clusterUuid, std::string& name,
                                          std::string& id);
  static void GetUnicastModeForCluster(bool& isUnicast, const std::string& clusterUuid);
  static void GetKorelDisks(KorelDiskList& disks, Tovrin::Korel::KorelDiskTypes types);
  static std::vector<KorelPolicyClass> GetKorelPolicyClasses();
  /// Fills the record of one storage-pool disk of `disks`. `fromCluster` asks the cluster directory
  /// too.
  static void GetKorelStoragePoolDiskInfo(const Uuid& disk, const KorelDiskList& disks,
                                          bool fromCluster,
                                          Tovrin::Korel::KorelStoragePoolDiskInfo& info);
  /// A cluster of the host has its data in two fault domains and a witness.
  static bool IsInStretchedCluster();
  static bool IsStoragePoolDisk(const std::string& device);

  static bool IsKorel2ConfigFssEnabled();
  static bool IsKorelDpArchivalProtectionFeatureEnabled();
  static bool IsKorelMetadataNodeFeatureEnabled();
  static bool IsKorelRebuildTrimFssEnabled();
  static bool IsKorelFeatureEnabled(Tovrin::Korel::KORELFeature feature);

  /// Hands the trace daemon's log options to the host; keys that are not given stay as they are.
  static void SetTracedLogOptions(const std::unordered_map<std::string, std::string>& options);

  /// "cluster", "vdisk", "vmnamespace", "vmswap", "vmem".
  static KorelPolicyClass StringToKorelPolicyClass(const std::string& text);
  static std::string KorelPolicyClassToString(KorelPolicyClass policyClass);
  /// Reads 8-4-4-4-12 hexadecimal digits in either case; throws naming any other text.
  static Uuid StringToKorelUuid(const std::string& text);
  /// In lower case.
  static std::string KorelUuidToString(const Uuid& uuid);
  /// Number of characters (code points); a byte that is no part of valid UTF-8 counts as one.
  static std::size_t UTF8StringCharLength(const std::string& text);

  /// Has the host run a program of its own by its absolute path; `arguments` are cut at blanks.
  /// `inShell` is false. With `wait` it waits for the end; with `showOutput` what the program
  /// prints goes on to the caller's own output, else it is dropped. Returns the exit status (0 when
  /// it was not waited for), negative when the program could not be run.
  static int KorelExec(const std::string& path, const std::string& arguments, bool inShell,
                       bool wait, bool showOutput);

  /// Reads one entry of GetUnicastAgentEntries; with `strict` an entry of unknown keys is refused.
  static KorelInfo::KorelUnicastAddressInfo KorelUnicastAddressInfoFromString(
      const std::string& text, bool strict);
};

}  // namespace HskCtl::Korel
