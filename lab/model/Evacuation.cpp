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

struct Room {
  std::int64_t device;
  std::int64_t freeGb;
};

/// The rooms found so far.
struct Rooms {
  std::vector<Room> rooms;
  std::int64_t freeGb = 0;
};

/// Takes rooms until there is as much as is needed.
void TakeRooms(Query& disks, const std::vector<const Device*>& leaving, std::int64_t neededGb,
               Rooms& taken) {
  while (taken.freeGb < neededGb && disks.Next()) {
    const Room room{disks.Number(0), disks.Number(1)};
    const bool isLeaving = std::any_of(leaving.begin(), leaving.end(), [&](const Device* device) {
      return device->id == room.device;
    });
    if (isLeaving) continue;
    taken.rooms.push_back(room);
    taken.freeGb += room.freeGb;
  }
}

/// Room for that much outside of `leaving`, or all there is when that is less.
Rooms RoomFor(Store& store, const Host& host, const std::vector<const Device*>& leaving,
              std::int64_t neededGb) {
  Rooms taken;
  Query own(store,
            "SELECT c.device, d.sizeGb - c.usedGb FROM devices d JOIN claims c "
            "ON c.device = d.id WHERE d.host = ? AND c.cachingDevice IS NOT c.device "
            "AND c.isMounted AND d.isHealthy ORDER BY c.device",
            host.id);
  TakeRooms(own, leaving, neededGb, taken);
  const auto membership = FirstMembership(store, host);
  if (!membership || membership->isClient ||
      membership->nodeType != Tovrin::Korel::KorelNodeType::Normal) {
    return taken;
  }
  // In the order of the devices, which a host has from when it was added. The joins are crossed so
  // that disks are read host by host, as many as it takes.
  Query others(store,
               "SELECT c.device, d.sizeGb - c.usedGb FROM memberships m "
               "CROSS JOIN devices d ON d.host = m.host "
               "CROSS JOIN claims c ON c.device = d.id "
               "WHERE m.cluster = ? AND m.host <> ? AND m.isActive AND m.nodeType = 0 "
               "AND c.cachingDevice IS NOT c.device AND c.isMounted AND d.isHealthy "
               "ORDER BY m.host, c.device",
               membership->clusterId, host.id);
  TakeRooms(others, leaving, neededGb, taken);
  return taken;
}

void CheckReadable(const Device& device) {
  if (device.claim->isMounted && device.isHealthy) return;
  Fail("device ", Quoted(device.name), device.isHealthy ? " is unmounted" : " is not healthy",
       ", so its ", std::to_string(device.claim->usedGb), " GB of data cannot be moved",
       device.isHealthy ? "; mount it or choose NoAction" : "; choose NoAction");
}

void Occupy(Store& store, std::int64_t device, std::int64_t moreGb) {
  Execute(store, "UPDATE claims SET usedGb = usedGb + ? WHERE device = ?", moreGb, device);
}

void CheckRoom(std::int64_t free, std::int64_t needed, Evacuation evacuation, bool isInCluster) {
  if (free >= needed) return;
  Fail(NameOf(evacuation), " needs ", std::to_string(needed),
       " GB on other mounted capacity disks of the ", isInCluster ? "cluster" : "host",
       ", and there are ", std::to_string(free), " GB free");
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

void Evacuate(Store& store, const Host& host, const std::vector<const Device*>& leaving,
              Evacuation evacuation) {
  std::int64_t needed = 0;
  for (const Device* device : leaving) {
    const std::int64_t share = ShareToMove(*device, evacuation);
    if (share == 0) continue;
    CheckReadable(*device);
    Occupy(store, device->id, -share);
    needed += share;
  }
  if (needed == 0) return;
  const auto [rooms, free] = RoomFor(store, host, leaving, needed);
  CheckRoom(free, needed, evacuation, IsEnabled(store, host));
  for (const Room& room : rooms) {
    const std::int64_t moved = std::min(needed, room.freeGb);
    Occupy(store, room.device, moved);
    needed -= moved;
  }
}

}  // namespace lab
