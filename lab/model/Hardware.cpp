#include "lab/model/Hardware.h"

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/AgentRecord.h"
#include "lab/model/Disks.h"
#include "lab/model/NetworkConfig.h"
#include "lab/store/Memory.h"
#include "lab/store/Query.h"

namespace lab {

void AddDevice(Store& store, const Host& host, const DeviceInventory& device) {
  if (!IsPlainName(device.name, true)) {
    Fail(Quoted(device.name), " is not a device name: 1 to 80 letters, digits, points, ",
         "underscores, colons and hyphens, a letter or digit first");
  }
  if (!DeviceNamed(store, host, device.name).empty()) {
    Fail("the host has a device ", Quoted(device.name), " already; 'autocli lab disk remove ",
         "--device ", device.name, "' takes it out");
  }
  CheckRange("the size of device " + Quoted(device.name) + " in GB", device.sizeGb, 1, kMaxSizeGb);
  // The number of the entry that tells of it tells it from all that bore the name before.
  const std::string number = std::to_string(NewestEntry(store) + 1);
  InsertDevice(store, host.id, device,
               DerivedUuid("device " + host.name + " " + device.name + " " + number));
}

void RemoveDevice(Store& store, const Host& host, const std::string& device) {
  const Devices devices = DevicesOf(store, host);
  const Device& found = FindByName(devices, device);
  CheckUnclaimed(devices, found);
  Execute(store, "DELETE FROM devices WHERE id = ?", found.id);
}

void AddInterface(Store& store, const Host& host, const std::string& name) {
  CheckPlainName("interface", name);
  if (Execute(store,
              "INSERT OR IGNORE INTO interfaces (host, name, position) SELECT ?1, ?2, "
              "coalesce(max(position) + 1, 0) FROM interfaces WHERE host = ?1",
              host.id, name) == 0) {
    Fail("the host has an interface ", Quoted(name),
         " already; 'autocli lab interface list' shows those it has");
  }
}

void RemoveInterface(Store& store, const Host& host, const std::string& name) {
  CheckHasInterface(store, host, name);
  if (Exists(store, "SELECT 1 FROM networkConfigs WHERE host = ? AND interface = ?", host.id,
             name)) {
    Fail("interface ", Quoted(name), " is in the Korel network configuration; 'korel network ",
         "remove --force --interface-name ", name, "' takes it out");
  }
  Query agent(store,
              "SELECT type, uuid, address FROM agents WHERE host = ? AND interface = ? ORDER BY id",
              host.id, name);
  if (agent.Next()) {
    const auto type = static_cast<Tovrin::Korel::KorelUnicastAgentType>(agent.Number(0));
    Fail("a unicast agent is bound to interface ", Quoted(name),
         "; 'korel cluster unicastagent remove --type ", AgentTypeName(type), " --uuid ",
         agent.Text(1), " --addr ", agent.Text(2), "' removes it");
  }
  Execute(store, "DELETE FROM interfaces WHERE host = ? AND name = ?", host.id, name);
}

void RemoveHost(Store& store, const Host& host) {
  Query membership(store,
                   "SELECT uuid, isActive FROM memberships m JOIN clusters c ON c.id = m.cluster "
                   "WHERE m.host = ? ORDER BY m.id",
                   host.id);
  if (membership.Next()) {
    const std::string korel = "'KOREL_LAB_HOST=" + host.name + " korel cluster ";
    Fail("host ", Quoted(host.name), " is in cluster ", membership.Text(0), "; ",
         membership.Flag(1) ? "" : korel + "restore', then ", korel, "leave' takes it out");
  }
  if (!Exists(store, "SELECT 1 FROM hosts WHERE id <> ?", host.id)) {
    Fail("host ", Quoted(host.name), " is the last one, and a lab has one at least; ",
         "'autocli lab host add' adds another");
  }
  Execute(store, "DELETE FROM faults WHERE host = ?", host.name);
  Execute(store, "DELETE FROM hosts WHERE id = ?", host.id);
}

}  // namespace lab
