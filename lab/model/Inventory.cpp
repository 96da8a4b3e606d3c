#include "lab/model/Inventory.h"

#include <cerrno>
#include <fstream>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <system_error>

#include "lab/common/Text.h"

namespace lab {
namespace {

using Json = nlohmann::json;

constexpr std::int64_t kMaxSizeGb = 1'000'000;

/// Reads the parts of an inventory, each known by its place ("hosts[0].name"), and gathers what is
/// wrong.
class InventoryReader {
 public:
  explicit InventoryReader(std::vector<std::string>& faults) : faults_(faults) {}

  std::vector<HostInventory> Hosts(const Json& root) {
    std::vector<HostInventory> hosts;
    if (!CheckObject(root, "the inventory", {"hosts"})) return hosts;
    std::set<std::string> names;
    for (const auto& [place, host] : Elements(root, "", "hosts")) {
      hosts.push_back(ReadHost(host, place));
      CheckOnce(names, hosts.back().name, place + ".name");
    }
    if (root.contains("hosts") && root["hosts"].is_array() && hosts.empty()) {
      faults_.emplace_back("hosts: at least one host is needed");
    }
    return hosts;
  }

 private:
  struct Element {
    std::string place;
    const Json& value;
  };

  void Fault(const std::string& place, const std::string& what) {
    faults_.push_back(place + ": " + what);
  }

  bool CheckObject(const Json& value, const std::string& place,
                   const std::vector<std::string>& keys) {
    if (!value.is_object()) {
      Fault(place, "must be an object");
      return false;
    }
    for (const auto& item : value.items()) {
      if (std::find(keys.begin(), keys.end(), item.key()) != keys.end()) continue;
      Fault(place, "unknown key " + Quoted(item.key()) + DidYouMean(item.key(), keys));
    }
    return true;
  }

  void CheckOnce(std::set<std::string>& names, const std::string& name, const std::string& place) {
    if (!name.empty() && !names.insert(name).second) Fault(place, Quoted(name) + " is there twice");
  }

  std::vector<Element> Elements(const Json& parent, const std::string& place, const char* key) {
    std::vector<Element> elements;
    const std::string path = place.empty() ? key : place + "." + key;
    if (!parent.contains(key) || !parent[key].is_array()) {
      Fault(path, "must be a list");
      return elements;
    }
    for (std::size_t i = 0; i < parent[key].size(); ++i) {
      elements.push_back({path + "[" + std::to_string(i) + "]", parent[key][i]});
    }
    return elements;
  }

  /// A name; empty, with a fault noted, when it is none.
  std::string Name(const Json& value, const std::string& place, bool withColon) {
    if (value.is_string() && IsPlainName(value.get_ref<const std::string&>(), withColon)) {
      return value.get<std::string>();
    }
    Fault(place, std::string("must be a name of 1 to 80 letters, digits, points, underscores") +
                     (withColon ? ", colons" : "") + " and hyphens, a letter or digit first");
    return {};
  }

  std::string NameOf(const Json& parent, const std::string& place, bool withColon) {
    return Name(parent.contains("name") ? parent["name"] : Json(), place + ".name", withColon);
  }

  bool BoolOf(const Json& parent, const std::string& place, const char* key) {
    if (!parent.contains(key)) return false;
    if (parent[key].is_boolean()) return parent[key].get<bool>();
    Fault(place + "." + key, "must be true or false");
    return false;
  }

  void ReadText(const Json& parent, const std::string& place, const char* key, std::string& text) {
    if (!parent.contains(key)) return;
    if (!parent[key].is_string()) return Fault(place + "." + key, "must be a text");
    text = parent[key].get<std::string>();
  }

  std::int64_t SizeOf(const Json& device, const std::string& place) {
    // A number beyond 64 bits is no integer to the parser.
    const Json size = device.contains("sizeGb") ? device["sizeGb"] : Json();
    if (size.is_number_integer() && size >= 1 && size <= kMaxSizeGb)
      return size.get<std::int64_t>();
    Fault(place + ".sizeGb", "must be an integer from 1 to " + std::to_string(kMaxSizeGb));
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
      Fault(place + ".capacityFlash", "is for devices with \"ssd\": true");
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
      for (const auto& [devicePlace, device] : Elements(value, place, "devices")) {
        host.devices.push_back(ReadDevice(device, devicePlace));
        CheckOnce(names, host.devices.back().name, devicePlace + ".name");
      }
    }
    if (value.contains("interfaces")) {
      host.interfaces.clear();
      std::set<std::string> names;
      for (const auto& [namePlace, name] : Elements(value, place, "interfaces")) {
        host.interfaces.push_back(Name(name, namePlace, false));
        CheckOnce(names, host.interfaces.back(), namePlace);
      }
    }
    return host;
  }

  std::vector<std::string>& faults_;
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
  faults.clear();
  Json root;
  try {
    root = Json::parse(text);
  } catch (const Json::exception& failure) {
    const std::string what = failure.what();
    faults.push_back("not JSON: " + what.substr(what.find("] ") + 2));
    return {};
  }
  return InventoryReader(faults).Hosts(root);
}

std::string ReadInventoryFile(const std::string& path) {
  // A pipe tells no size, so it is read up to one that no inventory has.
  constexpr std::size_t kMaxSize = 16U << 20U;
  std::string text(kMaxSize, '\0');
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file || (!file.read(text.data(), kMaxSize) && file.bad())) {
    Fail("cannot read the inventory ", Quoted(path), ": ",
         std::generic_category().message(errno == 0 ? EIO : errno));
  }
  if (!file.eof()) Fail("the inventory ", Quoted(path), " is larger than 16 MB");
  text.resize(static_cast<std::size_t>(file.gcount()));
  return text;
}

}  // namespace lab
