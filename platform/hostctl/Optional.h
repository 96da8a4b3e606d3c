#pragma once

#include <string>
#include <vector>

#include "platform/hostctl/KorelInfo.h"

/// Operations that a host control library may lack: their addresses are null then, so ask first.
/// Each throws KorelCtlException when it fails, and has then changed nothing. They are no members
/// of KorelInfo, since a virtual operation that is not there is no error but a crash.
namespace Tovrin::Korel {

/// Sets the default policy value of a class, for objects that are made from now on. The host
/// judges the value.
[[gnu::weak]] void SetDefaultPolicy(KorelInfo& info, KorelPolicyClass policyClass,
                                    const std::string& value);
/// Sets the default policy value of one class back to its built-in value.
[[gnu::weak]] void ClearDefaultPolicy(KorelInfo& info, KorelPolicyClass policyClass);
/// What a policy value is made of, for people: "copies (1 to 4)". It needs no host.
[[gnu::weak]] std::vector<std::string> DescribePolicyKeys();

/// The UUIDs of the clusters that RestoreCluster would make active, in the order of joining.
[[gnu::weak]] std::vector<std::string> GetInactiveClusterUuids(KorelInfo& info);
/// The host has the Korel Max role.
[[gnu::weak]] bool IsKorelMaxEnabled(KorelInfo& info);

/// Claims devices for the storage pool, all or none.
[[gnu::weak]] void AddStoragePoolDisks(KorelInfo& info, const std::vector<std::string>& devices);
[[gnu::weak]] void RemoveStoragePoolDisk(KorelInfo& info, const std::string& device,
                                         const std::string& evacuationMode);
[[gnu::weak]] void RemoveStoragePoolDiskByUuid(KorelInfo& info, const std::string& uuid,
                                               const std::string& evacuationMode);

}  // namespace Tovrin::Korel
