#include "lab/model/Hosts.h"

#include <optional>

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"
#include "lab/model/TraceDaemon.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

constexpr const char* kSelectHosts =
    "SELECT id, name, nodeUuid, coalesce(faultDomain, name) FROM hosts ";

Host ReadHost(const Row& row) { return {row.Number(0), row.Text(1), row.Text(2), row.Text(3)}; }

std::optional<Host> FindHost(Store& store, const std::string& name) {
  static const auto& sql = *new std::string(std::string(kSelectHosts) + "WHERE name = ?");
  Query row(store, sql.c_str(), name);
  if (!row.Next()) return std::nullopt;
  return ReadHost(row);
}

std::optional<Host> FirstHost(Store& store) {
  static const auto& sql = *new std::string(std::string(kSelectHosts) + "ORDER BY id LIMIT 1");
  Query row(store, sql.c_str());
  if (!row.Next()) return std::nullopt;
  return ReadHost(row);
}

/// For a message: the first few.
std::string HostNames(Store& store) {
  constexpr std::size_t kMostNames = 20;
  auto names = Texts(store, "SELECT name FROM hosts ORDER BY id LIMIT 21");
  if (names.size() > kMostNames) names.back() = "...";
  return Joined(names, ", ");
}

/// ASCII's and Latin-1's, of which a terminal takes either as a command.
bool IsControlCharacter(std::string_view character) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(character[i]); };
  if (character.size() == 1) return byte(0) < 0x20 || byte(0) == 0x7f;
  return character.size() == 2 && byte(0) == 0xc2 && byte(1) < 0xa0;
}

}  // namespace

std::string NamedHost() {
  const char* named = Environment("KOREL_LAB_HOST");
  return named == nullptr ? "" : named;
}

std::optional<Host> FindCurrentHost(Store& store) {
  const char* wanted = Environment("KOREL_LAB_HOST");
  if (auto host = FindHost(store, wanted == nullptr ? "host1" : wanted)) return host;
  if (wanted != nullptr) return std::nullopt;
  return FirstHost(store);
}

Host CurrentHost(Store& store) {
  if (auto host = FindCurrentHost(store)) return *host;
  const char* wanted = Environment("KOREL_LAB_HOST");
  if (wanted == nullptr) Fail("the lab has no host; 'autocli lab host add' adds one");
  Fail("KOREL_LAB_HOST names no host of the lab: ", Quoted(wanted), "; the hosts are ",
       HostNames(store));
}

Host HostNamed(Store& store, const std::string& name) {
  if (auto host = FindHost(store, name)) return *host;
  Fail("the lab has no host ", Quoted(name), "; the hosts are ", HostNames(store));
}

std::vector<Host> AllHosts(Store& store) {
  std::vector<Host> hosts;
  for (const Row& row : Query(store, (std::string(kSelectHosts) + "ORDER BY id").c_str()))
    hosts.push_back(ReadHost(row));
  return hosts;
}

void InsertDevice(Store& store, std::int64_t host, const DeviceInventory& device,
                  const std::string& uuid) {
  const char* kind = !device.isFlash          ? "Spinning disk"
                     : device.isCapacityFlash ? "Capacity flash"
                                              : "Caching flash";
  Execute(store,
          "INSERT INTO devices (host, name, uuid, isFlash, isCapacityFlash, sizeGb, vendor, model)"
          " VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
          host, device.name, uuid, device.isFlash, device.isCapacityFlash, device.sizeGb,
          device.vendor, device.model.empty() ? std::string(kind) : device.model);
}

void AddHost(Store& store, const HostInventory& inventory) {
  CheckPlainName("host", inventory.name);
  if (FindHost(store, inventory.name)) {
    Fail("the lab has a host ", Quoted(inventory.name), " already");
  }
  const auto host = Insert(store, "INSERT INTO hosts (name, nodeUuid) VALUES (?, ?)",
                           inventory.name, DerivedUuid("node " + inventory.name));
  for (const DeviceInventory& device : inventory.devices) {
    InsertDevice(store, host, device, DerivedUuid("device " + inventory.name + " " + device.name));
  }
  for (std::size_t i = 0; i < inventory.interfaces.size(); ++i) {
    Execute(store, "INSERT INTO interfaces (host, name, position) VALUES (?, ?, ?)", host,
            inventory.interfaces[i], static_cast<std::int64_t>(i));
  }
  InstallTraceDaemon(store, {host, inventory.name, "", ""});
}

void CheckFaultDomainName(const std::string& name) {
  constexpr std::size_t kMaxCharacters = 256;
  std::size_t characters = 0;
  for (std::size_t i = 0; i < name.size(); ++characters) {
    const std::size_t size = Utf8CharacterSize(std::string_view(name).substr(i));
    if (size == 0) Fail("fault domain name ", Quoted(name), " is not UTF-8");
    if (IsControlCharacter(std::string_view(name).substr(i, size))) {
      Fail("fault domain name ", Quoted(name), " has a control character in it");
    }
    i += size;
  }
  if (characters == 0 || characters > kMaxCharacters) {
    Fail("a fault domain name has 1 to 256 characters, got ", std::to_string(characters));
  }
}

void SetFaultDomain(Store& store, const Host& host, const std::string& name) {
  constexpr std::size_t kMaxBytes = 256;
  CheckFaultDomainName(name);
  if (name.size() > kMaxBytes) {
    Fail("a fault domain name has at most 256 bytes, got ", std::to_string(name.size()));
  }
  Execute(store, "UPDATE hosts SET faultDomain = ? WHERE id = ?", name, host.id);
}

void ResetFaultDomain(Store& store, const Host& host) {
  Execute(store, "UPDATE hosts SET faultDomain = NULL WHERE id = ?", host.id);
}

std::string FaultDomainId(const std::string& name) { return DerivedUuid("fault domain " + name); }

}  // namespace lab
