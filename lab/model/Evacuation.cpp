#include "lab/model/Evacuation.h"

#include <algorithm>

#include "lab/common/Text.h"
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

std::vector<Room> RoomOutside(Store& store, const Host& host,
                              const std::vector<const Device*>& leaving) {
  std::vector<Room> rooms;
  Rows rows =
      Query(store,
            "SELECT c.device, d.sizeGb - c.usedGb FROM claims c JOIN devices d ON d.id = c.device "
            "WHERE c.cachingDevice IS NOT c.device AND c.isMounted AND d.isHealthy "
            "AND (d.host = ?1 OR d.host IN (SELECT other.host FROM memberships own "
            "  JOIN clusters ON clusters.id = own.cluster AND NOT clusters.isClient "
            "  JOIN memberships other ON other.cluster = own.cluster "
            "  WHERE own.host = ?1 AND own.isActive AND own.nodeType <> 1 "
            "  AND other.isActive AND other.nodeType <> 1)) "
            "ORDER BY d.host <> ?1, c.device",
            host.id);
  while (rows.executeStep()) {
    const Room room{rows.getColumn(0).getInt64(), rows.getColumn(1).getInt64()};
    const bool isLeaving = std::any_of(leaving.begin(), leaving.end(), [&](const Device* device) {
      return device->id == room.device;
    });
    if (!isLeaving) rooms.push_back(room);
  }
  return rooms;
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

void CheckRoom(const std::vector<Room>& rooms, std::int64_t needed, Evacuation evacuation,
               bool isInCluster) {
  std::int64_t free = 0;
  for (const Room& room : rooms) free += room.freeGb;
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
  const auto rooms = RoomOutside(store, host, leaving);
  CheckRoom(rooms, needed, evacuation, IsEnabled(store, host));
  for (const Room& room : rooms) {
    const std::int64_t moved = std::min(needed, room.freeGb);
    Occupy(store, room.device, moved);
    needed -= moved;
  }
}

}  // namespace lab
