#pragma once

#include <array>
#include <string_view>

namespace lab {

/// Every host control operation, by the name under which it is logged and can be made to fail.
inline constexpr auto kOperations = std::to_array<std::string_view>({
    "AddCapacityFlashTag",
    "AddDatastore",
    "AddDisks",
    "AddKorelDirectTag",
    "AddStoragePoolDisks",
    "AddUnicastAgent",
    "ClearDatastores",
    "ClearDefaultPolicies",
    "ClearNetworkConfig",
    "CreateCluster",
    "DecomCancel",
    "FetchDiskUuids",
    "FetchKorelDiskIdentifier",
    "GetClusterInfo",
    "GetClusterUuid",
    "GetDatastoreName",
    "GetDatastores",
    "GetDefaultPolicy",
    "GetDiskInfo",
    "GetFaultDomainId",
    "GetFaultDomainName",
    "GetFormattedSystemDateTime",
    "GetHsknicConfigs",
    "GetInfoFromHXDS",
    "GetJoinedClusterUuids",
    "GetKorelDisks",
    "GetKorelInfo",
    "GetKorelStoragePoolDiskInfo",
    "GetNodeType",
    "GetPreferredFaultDomainInfo",
    "GetRekeyInterval",
    "GetResyncBandwidth",
    "GetResyncThrottle",
    "GetUnicastAgentEntries",
    "GetUnicastAgents",
    "GetUnicastModeForCluster",
    "GetUnicastWitnesses",
    "IsClientModeEnabled",
    "IsDataInTransitEncryptionEnabled",
    "IsFeatureEnabled",
    "IsHsknicConfigured",
    "IsInStretchedCluster",
    "IsKorel2ConfigFssEnabled",
    "IsKorelDpArchivalProtectionFeatureEnabled",
    "IsKorelFeatureEnabled",
    "IsKorelMetadataNodeFeatureEnabled",
    "IsKorelRebuildTrimFssEnabled",
    "IsStoragePoolDisk",
    "JoinClientCluster",
    "JoinCluster",
    "KorelExec",
    "LeaveCluster",
    "ListDiskUuids",
    "MountDisk",
    "MountDiskByUuid",
    "MountDiskGroup",
    "RebuildDiskGroup",
    "RebuildDiskGroupByUuid",
    "RefreshUnicastAgents",
    "RemoveCapacityFlashTag",
    "RemoveDatastore",
    "RemoveDisk",
    "RemoveDiskByUuid",
    "RemoveDiskGroup",
    "RemoveHsknic",
    "RemoveKorelDirectTag",
    "RemoveStoragePoolDisk",
    "RemoveStoragePoolDiskByUuid",
    "RemoveUnicastAgent",
    "ResetFaultDomain",
    "RestoreCluster",
    "RestoreNetworkConfig",
    "SetDataInTransitEncryption",
    "SetDatastoreName",
    "SetDefaultPolicy",
    "SetFaultDomainName",
    "SetHsknicConfig",
    "SetKorelMaxEnabled",
    "SetPreferredFaultDomain",
    "SetRekeyInterval",
    "SetResyncThrottle",
    "SetTracedLogOptions",
    "UnmountDisk",
    "UnmountDiskByUuid",
    "UnmountDiskGroup",
    "UnmountDiskGroupWithMode",
});

/// One of kOperations; any other name does not compile.
class OperationName {
 public:
  consteval OperationName(const char* name) : name_(name) {
    for (const std::string_view known : kOperations) {
      if (known == name_) return;
    }
    throw "no operation of this name is in kOperations";
  }

  constexpr std::string_view Get() const { return name_; }

 private:
  std::string_view name_;
};

}  // namespace lab
