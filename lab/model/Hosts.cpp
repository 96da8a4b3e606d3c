#include "lab/model/Hosts.h"

#include <algorithm>
#include <array>
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

/// Code points from the first to the last.
struct Range {
  char32_t first;
  char32_t last;
};

/// ASCII's and Latin-1's, of which a terminal takes either as a command.
constexpr std::array kControls{Range{0x0000, 0x001f}, Range{0x007f, 0x009f}};

/// They change the order in which what follows is shown.
constexpr std::array kDirectionMarks{Range{0x061c, 0x061c}, Range{0x200e, 0x200f},
                                     Range{0x202a, 0x202e}, Range{0x2066, 0x2069}};

/// Blanks, and characters that only act on others or show nothing.
constexpr std::array kInvisible{
    Range{0x0020, 0x0020},   Range{0x00a0, 0x00a0},  Range{0x00ad, 0x00ad}, Range{0x034f, 0x034f},
    Range{0x115f, 0x1160},   Range{0x1680, 0x1680},  Range{0x17b4, 0x17b5}, Range{0x180b, 0x180f},
    Range{0x2000, 0x200d},   Range{0x2028, 0x2029},  Range{0x202f, 0x202f}, Range{0x205f, 0x2065},
    Range{0x206a, 0x206f},   Range{0x2800, 0x2800},  Range{0x3000, 0x3000}, Range{0x3164, 0x3164},
    Range{0xfe00, 0xfe0f},   Range{0xfeff, 0xfeff},  Range{0xffa0, 0xffa0}, Range{0xfff0, 0xfffb},
    Range{0x1d173, 0x1d17a}, Range{0xe0000, 0xe0fff}};

template <std::size_t count>
bool IsOneOf(char32_t character, const std::array<Range, count>& ranges) {
  return std::any_of(ranges.begin(), ranges.end(), [&](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

/// The code point of one character of UTF-8.
char32_t CodePoint(std::string_view character) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(character[i]); };
  if (character.size() == 1) return byte(0);
  char32_t point = byte(0) & (0x7fU >> character.size());
  for (std::size_t i = 1; i < character.size(); ++i) point = (point << 6U) | (byte(i) & 0x3fU);
  return point;
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
  bool isVisible = false;
  for (std::size_t i = 0; i < name.size(); ++characters) {
    const std::size_t size = Utf8CharacterSize(std::string_view(name).substr(i));
    if (size == 0) Fail("fault domain name ", Quoted(name), " is not UTF-8");
    const char32_t character = CodePoint(std::string_view(name).substr(i, size));
    if (IsOneOf(character, kControls)) {
      Fail("fault domain name ", Quoted(name), " has a control character in it");
    }
    if (IsOneOf(character, kDirectionMarks)) {
      Fail("fault domain name ", Quoted(name), " has a mark of writing direction in it");
    }
    isVisible = isVisible || !IsOneOf(character, kInvisible);
    i += size;
  }
  if (characters == 0 || characters > kMaxCharacters) {
    Fail("a fault domain name has 1 to 256 characters, got ", std::to_string(characters));
  }
  if (!isVisible) Fail("fault domain name ", Quoted(name), " has no visible character in it");
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
