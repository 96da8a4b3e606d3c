#include "lab/model/Evacuation.h"

#include <algorithm>

#include "lab/base/Text.h"
#include "lab/model/Clusters.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

const char* NameOf(Evacuation evacuation) {
  switch (evacuation) {
    case Evacuation::None:
      return "NoAction";
    case Evacuation::Accessibility:
      return "EnsureObjectAccessibility";
    case Evacuation::All:
      return "EvacuateAllData";
  }
  return "";
}

/// The data that has to move off a disk, in GB.
std::int64_t ShareToMove(const Device& device, Evacuation evacuation) {
  const std::int64_t used = device.claim->usedGb;
  switch (evacuation) {
    case Evacuation::None:
      return 0;
    case Evacuation::Accessibility:
      return used - used / 2;
    case Evacuation::All:
      return used;
  }
  return 0;
}

/// Data goes from disk groups to disk groups, and from the storage pool to storage pools.
constexpr const char* kUsable =
    "c.cachingDevice IS NOT c.device AND (c.cachingDevice IS NULL) = ? AND c.isMounted "
    "AND d.isHealthy AND c.encryption IS NOT 0 AND c.wrongChecksum IS NULL AND NOT EXISTS "
    "(SELECT 1 FROM devices head JOIN claims own ON own.device = head.id "
    "WHERE head.id = c.cachingDevice AND NOT (head.isHealthy AND own.encryption IS NOT 0 "
    "AND own.wrongChecksum IS NULL)) ";

/// A disk that stays in use.
struct OtherDisk {
  std::int64_t device;
  std::int64_t freeGb;
  std::int64_t usedGb;
};

using Leaving = std::vector<const Device*>;

/// Visits the disks that the query answers, as long as the visitor wants more.
template <typename Visit>
bool EachOf(Query& disks, const Leaving& leaving, const Visit& visit) {
  while (disks.Next()) {
    const OtherDisk disk{disks.Number(0), disks.Number(1) - disks.Number(2), disks.Number(2)};
    const bool isLeaving = std::any_of(leaving.begin(), leaving.end(), [&](const Device* device) {
      return device->id == disk.device;
    });
    if (!isLeaving && !visit(disk)) return false;
  }
  return true;
}

/// Visits the disks that stay, the host's own first, as long as the visitor wants more.
template <typename Visit>
void EachOther(Store& store, const Host& host, const Leaving& leaving, const Visit& visit) {
  const bool isPool = leaving.front()->IsInPool();
  const std::string ownSql =
      std::string(
          "SELECT c.device, d.sizeGb, c.usedGb FROM devices d JOIN claims c ON c.device = d.id "
          "WHERE d.host = ? AND ") +
      kUsable + "ORDER BY c.device";
  Query own(store, ownSql.c_str(), host.id, isPool);
  if (!EachOf(own, leaving, visit)) return;
  const auto membership = FirstMembership(store, host);
  if (!membership || membership->isClient ||
      membership->nodeType != Tovrin::Korel::KorelNodeType::Normal) {
    return;
  }
  // In the order of the devices, which a host has from when it was added. The joins are crossed so
  // that disks are read host by host, as many as it takes.
  const std::string otherSql =
      std::string(
          "SELECT c.device, d.sizeGb, c.usedGb FROM memberships m "
          "CROSS JOIN devices d ON d.host = m.host CROSS JOIN claims c ON c.device = d.id "
          "WHERE m.cluster = ? AND m.host <> ? AND m.isActive AND m.nodeType = 0 AND ") +
      kUsable + "ORDER BY m.host, c.device";
  Query others(store, otherSql.c_str(), membership->clusterId, host.id, isPool);
  EachOf(others, leaving, visit);
}

/// Why nothing can be read from the disk; empty when it can.
std::string Obstacle(const Devices& devices, const Device& device) {
  if (std::string trouble = device.Trouble(); !trouble.empty()) return trouble;
  const std::string trouble = device.IsInGroup() ? GroupOf(devices, device).Trouble() : "";
  return trouble.empty() ? "" : " has a caching device that" + trouble;
}

std::string DataOf(const Device& device) {
  return std::to_string(device.claim->usedGb) + " GB of data";
}

[[noreturn]] void FailUnreadable(const Devices& devices, const Device& device,
                                 const std::string& obstacle) {
  Fail("device ", Quoted(device.name), obstacle, ", so its ", DataOf(device), " cannot be moved; ",
       RemovalCommand(devices, device), " gives the data up");
}

void CheckMounted(const Devices& devices, const Device& device) {
  // Nothing unmounts those of the pool.
  if (device.claim->isMounted || device.IsInPool()) return;
  Fail("device ", Quoted(device.name), " is unmounted, so its ", DataOf(device),
       " cannot be moved; ", MountCommand(devices, device), " mounts it, ",
       RemovalCommand(devices, device), " gives the data up");
}

void Occupy(Store& store, std::int64_t device, std::int64_t moreGb) {
  Execute(store, "UPDATE claims SET usedGb = usedGb + ? WHERE device = ?", moreGb, device);
}

/// "disk groups of the cluster": where the other disks are.
std::string Elsewhere(Store& store, const Host& host, const Leaving& leaving) {
  return std::string(leaving.front()->IsInPool() ? "storage pool" : "disk groups") +
         (IsEnabled(store, host) ? " of the cluster" : " of the host");
}

/// How a host comes by more disks, and how it can do without.
std::string AddOrGiveUp(const Leaving& leaving) {
  return std::string("; ") +
         (leaving.front()->IsInPool() ? "'korel storagepool add'" : "'korel storage add'") +
         " brings more disks, and the evacuation mode noAction gives the data up";
}

/// The disks that cannot be read hold `unreadGb`. Copies of it are on other disks at best.
void CheckCopies(Store& store, const Host& host, const Leaving& leaving, std::int64_t unreadGb) {
  std::int64_t held = 0;
  EachOther(store, host, leaving, [&](const OtherDisk& disk) {
    held += disk.usedGb;
    return held < unreadGb;
  });
  if (held >= unreadGb) return;
  Fail(std::to_string(unreadGb), " GB of data cannot be read, and the other mounted disks of the ",
       Elsewhere(store, host, leaving), " hold ", std::to_string(held),
       " GB, too little to be copies of it; the evacuation mode noAction gives the data up");
}

/// Moves so much to the disks that stay.
void MoveAway(Store& store, const Host& host, const Leaving& leaving, std::int64_t gb,
              Evacuation evacuation) {
  std::vector<OtherDisk> rooms;
  std::int64_t free = 0;
  EachOther(store, host, leaving, [&](const OtherDisk& disk) {
    rooms.push_back(disk);
    free += disk.freeGb;
    return free < gb;
  });
  if (free < gb) {
    Fail(NameOf(evacuation), " needs ", std::to_string(gb), " GB on other mounted disks of the ",
         Elsewhere(store, host, leaving), ", and there are ", std::to_string(free), " GB free",
         AddOrGiveUp(leaving));
  }
  for (const OtherDisk& room : rooms) {
    const std::int64_t moved = std::min(gb, room.freeGb);
    Occupy(store, room.device, moved);
    gb -= moved;
  }
}

}  // namespace

Evacuation EvacuationFrom(const std::string& mode) {
  if (mode.empty()) return Evacuation::None;
  for (const auto known : {Evacuation::None, Evacuation::Accessibility, Evacuation::All}) {
    if (mode == NameOf(known)) return known;
  }
  Fail(Quoted(mode), " is no evacuation mode: NoAction, EnsureObjectAccessibility or ",
       "EvacuateAllData");
}

void Evacuate(Store& store, const Host& host, const Devices& devices,
              const std::vector<const Device*>& leaving, Evacuation evacuation) {
  std::int64_t needed = 0;
  std::int64_t unread = 0;
  for (const Device* device : leaving) {
    const std::int64_t share = ShareToMove(*device, evacuation);
    if (share == 0) continue;
    if (const std::string obstacle = Obstacle(devices, *device); !obstacle.empty()) {
      if (evacuation == Evacuation::All) FailUnreadable(devices, *device, obstacle);
      unread += device->claim->usedGb;
      continue;
    }
    CheckMounted(devices, *device);
    Occupy(store, device->id, -share);
    needed += share;
  }
  if (unread > 0) CheckCopies(store, host, leaving, unread);
  if (needed > 0) MoveAway(store, host, leaving, needed, evacuation);
}

}  // namespace lab
