#pragma once

namespace OstrelCli::KorelNamespace {

/// Why a member of a client cluster can neither make nor join a cluster.
inline constexpr const char* kHostIsInClientCluster =
    "The host is in a Korel client cluster and enabled for Korel client mode. You need to remove it from the cluster or disable client mode.";

}  // namespace OstrelCli::KorelNamespace
