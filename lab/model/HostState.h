#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "lab/model/Hosts.h"
#include "lab/store/Store.h"
#include "platform/hostctl/Records.h"

namespace lab {

/// What goes on on one host.

/// Takes the host down and up: its active cluster memberships and network configuration are gone
/// until they are restored, and so is a maintenance operation.
void Reboot(Store& store, const Host& host);

/// What the host is to its cluster; when it is not detailed, only whether it is in one.
std::shared_ptr<Tovrin::Korel::KorelClusterInfo> ClusterInfo(Store& store, const Host& host,
                                                             bool isDetailed);

bool IsKorelMax(Store& store, const Host& host);
/// Throws KorelCtlException when the host is not in a Korel cluster, or when it has disks in use
/// and the role is to be enabled.
void SetKorelMax(Store& store, const Host& host, bool isEnabled);

/// Throws KorelCtlException when the host has the role, with which it takes no disks into use.
void CheckNoKorelMax(Store& store, const Host& host);

/// "OFF", or "ENTERING" while there is a maintenance operation.
std::string MaintenanceState(Store& store, const Host& host);
/// Throws KorelCtlException when there is one already.
void StartMaintenance(Store& store, const Host& host);
/// Throws KorelCtlException when there is none.
void CancelMaintenance(Store& store, const Host& host);

/// In Mbps, 0 for none.
std::int64_t ResyncThrottle(Store& store, const Host& host);
/// From 0 to 512 Mbps.
void SetResyncThrottle(Store& store, const Host& host, std::int64_t mbps);
/// What resync traffic would use without a throttle: 0 to 1,000,000 Mbps.
void SetResyncRate(Store& store, const Host& host, std::int64_t mbps);
/// What it uses with it, in Mbps.
std::int64_t ResyncBandwidth(Store& store, const Host& host);

}  // namespace lab
