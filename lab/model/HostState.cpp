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
  if (isEnabled && Exists(store,
                          "SELECT 1 FROM claims c JOIN devices d ON d.id = c.device "
                          "WHERE d.host = ? AND c.cachingDevice IS NOT NULL",
                          host.id)) {
    Fail("the host has disk groups; 'korel storage remove' removes them first");
  }
  Set(store, host, "isKorelMax", isEnabled);
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
