#include "lab/model/HostState.h"

#include <algorithm>

#include "lab/base/Text.h"
#include "lab/model/Clusters.h"
#include "lab/model/NetworkConfig.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

std::int64_t Ask(Store& store, const Host& host, const std::string& column) {
  const std::string sql = "SELECT " + column + " FROM hosts WHERE id = ?";
  Query row(store, sql.c_str(), host.id);
  row.Next();
  return row.Number(0);
}

void Set(Store& store, const Host& host, const std::string& column, std::int64_t value) {
  const std::string sql = "UPDATE hosts SET " + column + " = ? WHERE id = ?";
  Execute(store, sql.c_str(), value, host.id);
}

bool IsInMaintenance(Store& store, const Host& host) {
  return Ask(store, host, "isInMaintenance") != 0;
}

void CheckNoDisks(Store& store, const Host& host) {
  Query used(store,
             "SELECT cachingDevice IS NULL FROM devices d JOIN claims c ON c.device = d.id "
             "WHERE d.host = ? LIMIT 1",
             host.id);
  if (!used.Next()) return;
  const bool isPool = used.Flag(0);
  Fail("the host has ", isPool ? "disks in its storage pool" : "disk groups",
       "; they must be removed before it can be a Korel Max host: 'korel ",
       isPool ? "storagepool remove --disk" : "storage remove --ssd", "'");
}

}  // namespace

void Reboot(Store& store, const Host& host) {
  SuspendClusters(store, host);
  ClearNetworkConfig(store, host);
  Set(store, host, "isInMaintenance", 0);
}

std::shared_ptr<Tovrin::Korel::KorelClusterInfo> ClusterInfo(Store& store, const Host& host,
                                                             bool isDetailed) {
  auto info = std::make_shared<Tovrin::Korel::KorelClusterInfo>();
  info->enabled = IsEnabled(store, host);
  if (isDetailed) {
    info->nodeUuid = host.nodeUuid;
    info->maintenanceState = MaintenanceState(store, host);
  }
  return info;
}

bool IsKorelMax(Store& store, const Host& host) { return Ask(store, host, "isKorelMax") != 0; }

void SetKorelMax(Store& store, const Host& host, bool isEnabled) {
  RequireEnabled(store, host);
  if (isEnabled) CheckNoDisks(store, host);
  Set(store, host, "isKorelMax", isEnabled);
}

void CheckNoKorelMax(Store& store, const Host& host) {
  if (!IsKorelMax(store, host)) return;
  Fail("the host has the Korel Max role, with which it takes no disks into use; ",
       "'korel cluster korelmax set --enable false' takes the role off");
}

std::string MaintenanceState(Store& store, const Host& host) {
  return IsInMaintenance(store, host) ? "ENTERING" : "OFF";
}

void StartMaintenance(Store& store, const Host& host) {
  if (IsInMaintenance(store, host)) {
    Fail(
        "a maintenance mode operation is in progress already; 'korel maintenancemode cancel' ends it");
  }
  Set(store, host, "isInMaintenance", 1);
}

void CancelMaintenance(Store& store, const Host& host) {
  if (!IsInMaintenance(store, host)) {
    Fail(
        "no maintenance mode operation is in progress; 'autocli lab maintenance start' starts one");
  }
  Set(store, host, "isInMaintenance", 0);
}

std::int64_t ResyncThrottle(Store& store, const Host& host) {
  return Ask(store, host, "resyncThrottle");
}

void SetResyncThrottle(Store& store, const Host& host, std::int64_t mbps) {
  CheckRange("the resync throttle in Mbps", mbps, 0, 512);
  Set(store, host, "resyncThrottle", mbps);
}

void SetResyncRate(Store& store, const Host& host, std::int64_t mbps) {
  CheckRange("the resync rate in Mbps", mbps, 0, 1'000'000);
  Set(store, host, "resyncRate", mbps);
}

std::int64_t ResyncBandwidth(Store& store, const Host& host) {
  const std::int64_t rate = Ask(store, host, "resyncRate");
  const std::int64_t throttle = ResyncThrottle(store, host);
  return throttle == 0 ? rate : std::min(rate, throttle);
}

}  // namespace lab
