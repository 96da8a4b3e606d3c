// The JSON text of a lab inventory, read and made a lab of.
//
// - Any bytes are accepted, as one host at least, or refused with a reason for each fault: where
//   the hosts can be told apart, one bad host more is one reason more.
// - A reason begins with the place of the fault.
// - Accepted hosts can be made a lab of: it has just them, with their devices and interfaces.

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "fuzz/Support.h"
#include "lab/model/Lab.h"
#include "lab/store/Query.h"

namespace {

using Json = nlohmann::ordered_json;

std::vector<std::string> FaultsOf(const std::string& text) {
  std::vector<std::string> faults = {"of an earlier text"};
  const auto hosts = lab::ParseInventory(text, faults);
  for (const std::string& fault : faults) {
    fuzz::Require(fault.find(": ") > 0 && fault.find(": ") < fault.size() - 2,
                  "a fault has a place and a reason", fault);
  }
  fuzz::Require(!faults.empty() || !hosts.empty(), "an accepted inventory has hosts");
  return faults;
}

/// The text with a host more that has one fault; empty when it lists no hosts.
std::string WithBadHost(const std::string& text) {
  Json root = Json::parse(text, nullptr, false);
  if (!root.is_object() || !root.contains("hosts") || !root["hosts"].is_array()) return "";
  if (root["hosts"].empty()) return "";
  root["hosts"].push_back({{"name", "not a name"}});
  return root.dump();
}

/// Every device and interface in the lab, behind the host that it belongs to.
std::vector<std::string> NamesInLab() {
  auto names = lab::ReadLab([](lab::Store& store) {
    return lab::Texts(
        store,
        "SELECT hosts.name || ' ' || item.name FROM hosts JOIN"
        " (SELECT host, name FROM devices UNION ALL SELECT host, name FROM interfaces)"
        " AS item ON item.host = hosts.id");
  });
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> NamesIn(const std::vector<lab::HostInventory>& hosts) {
  std::vector<std::string> names;
  for (const auto& host : hosts) {
    for (const auto& device : host.devices) names.push_back(host.name + " " + device.name);
    for (const auto& interface : host.interfaces) names.push_back(host.name + " " + interface);
  }
  std::sort(names.begin(), names.end());
  return names;
}

void RequireLabOf(const std::vector<lab::HostInventory>& hosts) {
  static const bool isPlaced = setenv("KOREL_LAB", (fuzz::Folder() + "/lab.db").c_str(), 1) == 0;
  fuzz::Require(isPlaced, "the lab has a place");
  lab::InitLab(hosts, true);
  fuzz::Require(NamesInLab() == NamesIn(hosts), "the lab has what the inventory says");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::AsText(data, size);
  std::vector<std::string> faults = FaultsOf(text);
  const std::string worse = WithBadHost(text);
  if (!worse.empty()) {
    fuzz::Require(FaultsOf(worse).size() == faults.size() + 1, "every fault is listed", text);
  }
  if (faults.empty()) RequireLabOf(lab::ParseInventory(text, faults));
  return 0;
}
