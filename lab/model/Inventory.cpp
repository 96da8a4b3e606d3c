#include "lab/model/Inventory.h"

#include <set>

#include "lab/base/File.h"
#include "lab/base/Text.h"
#include "lab/model/InventoryJson.h"

namespace lab {
namespace {

using Json = nlohmann::json;

/// The value of the key; null when the object has none.
const Json& PartOf(const Json& object, const char* key) {
  static const Json none;
  const auto found = object.find(key);
  return found == object.end() ? none : *found;
}

/// Reads the parts of an inventory, each known by its place ("hosts[0].name"), and gathers what is
/// wrong.
class InventoryReader {
 public:
  explicit InventoryReader(InventoryFaults& faults) : faults_(faults) {}

  std::vector<HostInventory> Hosts(const Json& root) {
    std::vector<HostInventory> hosts;
    if (!CheckObject(root, "the inventory", {"hosts"})) return hosts;
    std::set<std::string> names;
    ForEach(root, "", "hosts", [&](const Json& value, const std::string& place) {
      HostInventory host = ReadHost(value, place);
      CheckOnce(names, host.name, place + ".name");
      // Hosts that nobody will have are not kept: a small text can say a great many of them.
      if (faults_.IsEmpty()) hosts.push_back(std::move(host));
    });
    const Json& list = PartOf(root, "hosts");
    if (list.is_array() && list.empty()) faults_.Add("hosts", "at least one host is needed");
    return hosts;
  }

 private:
  bool CheckObject(const Json& value, const std::string& place,
                   const std::vector<std::string>& keys) {
    if (!value.is_object()) {
      faults_.Add(place, "must be an object");
      return false;
    }
    for (const auto& item : value.items()) {
      if (std::find(keys.begin(), keys.end(), item.key()) != keys.end()) continue;
      faults_.Add(place, "unknown key " + Quoted(item.key()) + DidYouMean(item.key(), keys));
    }
    return true;
  }

  void CheckOnce(std::set<std::string>& names, const std::string& name, const std::string& place) {
    if (name.empty() || names.insert(name).second) return;
    faults_.Add(place, Quoted(name) + " is there twice");
  }

  /// Visits the elements of the list, each with its place.
  template <typename Visit>
  void ForEach(const Json& parent, const std::string& place, const char* key, const Visit& visit) {
    const std::string path = place.empty() ? key : place + "." + key;
    const Json& list = PartOf(parent, key);
    if (!list.is_array()) return faults_.Add(path, "must be a list");
    for (std::size_t i = 0; i < list.size(); ++i) {
      visit(list[i], path + "[" + std::to_string(i) + "]");
    }
  }

  /// A name; empty, with a fault noted, when it is none.
  std::string Name(const Json& value, const std::string& place, bool withColon) {
    if (value.is_string() && IsPlainName(value.get_ref<const std::string&>(), withColon)) {
      return value.get<std::string>();
    }
    faults_.Add(place,
                std::string("must be a name of 1 to 80 letters, digits, points, underscores") +
                    (withColon ? ", colons" : "") + " and hyphens, a letter or digit first");
    return {};
  }

  std::string NameOf(const Json& parent, const std::string& place, bool withColon) {
    return Name(PartOf(parent, "name"), place + ".name", withColon);
  }

  bool BoolOf(const Json& parent, const std::string& place, const char* key) {
    if (!parent.contains(key)) return false;
    if (parent[key].is_boolean()) return parent[key].get<bool>();
    faults_.Add(place + "." + key, "must be true or false");
    return false;
  }

  void ReadText(const Json& parent, const std::string& place, const char* key, std::string& text) {
    if (!parent.contains(key)) return;
    if (!parent[key].is_string()) return faults_.Add(place + "." + key, "must be a text");
    text = parent[key].get<std::string>();
  }

  std::int64_t SizeOf(const Json& device, const std::string& place) {
    // A number beyond 64 bits is no integer to the parser.
    const Json& size = PartOf(device, "sizeGb");
    if (size.is_number_integer() && size >= 1 && size <= kMaxSizeGb)
      return size.get<std::int64_t>();
    faults_.Add(place + ".sizeGb", "must be an integer from 1 to " + std::to_string(kMaxSizeGb));
    return 0;
  }

  DeviceInventory ReadDevice(const Json& value, const std::string& place) {
    DeviceInventory device;
    if (!CheckObject(value, place, {"name", "ssd", "capacityFlash", "sizeGb", "vendor", "model"})) {
      return device;
    }
    device.name = NameOf(value, place, true);
    device.isFlash = BoolOf(value, place, "ssd");
    device.isCapacityFlash = BoolOf(value, place, "capacityFlash");
    if (device.isCapacityFlash && !device.isFlash) {
      faults_.Add(place + ".capacityFlash", "is for devices with \"ssd\": true");
    }
    device.sizeGb = SizeOf(value, place);
    ReadText(value, place, "vendor", device.vendor);
    ReadText(value, place, "model", device.model);
    return device;
  }

  HostInventory ReadHost(const Json& value, const std::string& place) {
    if (!CheckObject(value, place, {"name", "devices", "interfaces"})) return {};
    HostInventory host = StandardHost(NameOf(value, place, false));
    if (value.contains("devices")) {
      host.devices.clear();
      std::set<std::string> names;
      ForEach(value, place, "devices", [&](const Json& device, const std::string& devicePlace) {
        host.devices.push_back(ReadDevice(device, devicePlace));
        CheckOnce(names, host.devices.back().name, devicePlace + ".name");
      });
    }
    if (value.contains("interfaces")) {
      host.interfaces.clear();
      std::set<std::string> names;
      ForEach(value, place, "interfaces", [&](const Json& name, const std::string& namePlace) {
        host.interfaces.push_back(Name(name, namePlace, false));
        CheckOnce(names, host.interfaces.back(), namePlace);
      });
    }
    return host;
  }

  InventoryFaults& faults_;
};

}  // namespace

HostInventory StandardHost(std::string name) {
  HostInventory host{std::move(name), {}, {"hsk0", "hsk1", "hsk2"}};
  const auto add = [&](int adapter, int count, bool isFlash, bool isCapacity, int sizeGb) {
    for (int target = 1; target <= count; ++target) {
      host.devices.push_back(
          {.name = "mpx.dkhba" + std::to_string(adapter) + ":C0:T" + std::to_string(target) + ":L0",
           .isFlash = isFlash,
           .isCapacityFlash = isFlash && isCapacity,
           .sizeGb = sizeGb});
    }
  };
  add(0, 2, true, false, 800);
  add(1, 2, true, true, 3840);
  add(2, 6, false, true, 4000);
  return host;
}

std::vector<HostInventory> ParseInventory(std::string_view text, std::vector<std::string>& faults) {
  InventoryFaults found;
  const Json root = ReadInventoryJson(text, found);
  std::vector<HostInventory> hosts;
  if (found.IsEmpty()) hosts = InventoryReader(found).Hosts(root);
  faults = found.Messages();
  return hosts;
}

std::string ReadInventoryFile(const std::string& path) {
  // A pipe tells no size, so it is read up to one that no inventory has.
  constexpr std::size_t kMaxSize = 16U << 20U;
  std::string text = ReadUpTo(kMaxSize, path, "the inventory ");
  if (text.size() == kMaxSize) Fail("the inventory ", Quoted(path), " is larger than 16 MB");
  return text;
}

}  // namespace lab
