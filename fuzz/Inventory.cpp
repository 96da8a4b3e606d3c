// The JSON text of a lab inventory, read and made a lab of.
//
// - Any bytes are accepted, as one host at least, or refused with a reason for each fault: where
//   the hosts can be told apart, one bad host more is one reason more.
// - A reason begins with the place of the fault. Those above a hundred are only counted.
// - Accepted hosts can be made a lab of: it has just them, with their devices and interfaces.

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "fuzz/Support.h"
#include "lab/model/Lab.h"
#include "lab/store/Query.h"

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kMaxListed = 100;

std::vector<std::string> FaultsOf(const std::string& text) {
  std::vector<std::string> faults = {"of an earlier text"};
  const auto hosts = lab::ParseInventory(text, faults);
  fuzz::Require(faults.size() <= kMaxListed + 1, "faults beyond a hundred are counted", text);
  for (std::size_t i = 0; i < std::min(faults.size(), kMaxListed); ++i) {
    const std::string& fault = faults[i];
    fuzz::Require(fault.find(": ") > 0 && fault.find(": ") < fault.size() - 2,
                  "a fault has a place and a reason", fault);
  }
  fuzz::Require(!faults.empty() || !hosts.empty(), "an accepted inventory has hosts");
  return faults;
}

/// The first fault keeps the text from being read as hosts.
bool IsAboutText(const std::vector<std::string>& faults) {
  if (faults.empty()) return false;
  const std::string& fault = faults.front();
  return fault.starts_with("not JSON: ") || fault.ends_with(" levels deep") ||
         (fault.find(": the key ") != std::string::npos && fault.ends_with(" is there twice"));
}

/// All faults, those that are only counted included.
std::size_t CountOf(const std::vector<std::string>& faults) {
  if (faults.size() <= kMaxListed) return faults.size();
  return kMaxListed + std::stoul(faults.back().substr(std::string("and ").size()));
}

/// One bad host more in a text in which hosts can be told apart is one fault more.
void RequireAllCounted(const std::string& text) {
  Json root = Json::parse(text);
  if (!root.is_object() || !root.contains("hosts") || !root["hosts"].is_array()) return;
  if (root["hosts"].empty()) return;
  const std::size_t before = CountOf(FaultsOf(text));
  root["hosts"].push_back({{"name", "not a name"}});
  fuzz::Require(CountOf(FaultsOf(root.dump())) == before + 1, "every fault is counted", text);
}

/// Every device and interface in the lab, after the host that it belongs to.
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
  const std::vector<std::string> faults = FaultsOf(text);
  if (!IsAboutText(faults)) RequireAllCounted(text);
  std::vector<std::string> none;
  if (faults.empty()) RequireLabOf(lab::ParseInventory(text, none));
  return 0;
}
