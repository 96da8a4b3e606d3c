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

/// Claims devices for the storage pool, all or none.
[[gnu::weak]] void AddStoragePoolDisks(KorelInfo& info, const std::vector<std::string>& devices);
[[gnu::weak]] void RemoveStoragePoolDisk(KorelInfo& info, const std::string& device,
                                         const std::string& evacuationMode);
[[gnu::weak]] void RemoveStoragePoolDiskByUuid(KorelInfo& info, const std::string& uuid,
                                               const std::string& evacuationMode);

}  // namespace Tovrin::Korel
