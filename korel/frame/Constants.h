#pragma once

/// Texts that several commands share. Constant expressions: they cost nothing when the library is
/// loaded.
namespace OstrelCli::KorelNamespace {

inline constexpr const char* kDefaultMasterGroupV4 = "224.1.2.3";
inline constexpr const char* kDefaultMasterGroupV6 = "FF19:0:0:0:0:1:2:3";
inline constexpr const char* kDefaultAgentGroupV4 = "224.2.3.4";
inline constexpr const char* kDefaultAgentGroupV6 = "FF19:0:0:0:0:2:3:4";
inline constexpr const char* kLastDiskRemoveError = "Can not remove last HDD";
inline constexpr const char* kTrafficTypeWitness = "witness";
inline constexpr const char* kTrafficTypeKorel = "korel";
inline constexpr const char* kTagAll = "all";
inline constexpr const char* kTagCapacityFlash = "capacityFlash";
inline constexpr const char* kTagKorelDirect = "korelDirect";
inline constexpr const char* kDeviceTagPathPrefix = "/korel/device/tag/";

/// How descriptions show what a UUID looks like.
inline constexpr const char* kUuidForm =
    "in the form \"nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn\" where n are hexadecimal digits.";

}  // namespace OstrelCli::KorelNamespace
