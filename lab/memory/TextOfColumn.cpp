#include "lab/memory/TextOfColumn.h"

#include <algorithm>
#include <array>

#include "lab/base/Text.h"
#include "lab/model/AgentRecord.h"
#include "lab/model/Clusters.h"
#include "lab/store/Query.h"
#include "platform/hostctl/KorelUtil.h"

namespace lab {
namespace {

/// Where the value comes from.
struct Place {
  const TimeOfChange& time;
  const std::string& table;
  Moment moment;

  /// The column of the row that the value refers to; the value itself when there is none.
  std::string Named(const char* referred, const std::string& value, const char* column) const {
    return time.ValueOf(referred, {value}, column, moment).value_or(value);
  }
};

std::string HostName(const Place& place, const std::string& value) {
  return place.Named("hosts", value, "name");
}

std::string ClusterUuid(const Place& place, const std::string& value) {
  // An agent names a cluster that the lab need not know, by its UUID.
  return place.table == "agents" ? value : place.Named("clusters", value, "uuid");
}

std::string DatastoreName(const Place& place, const std::string& value) {
  return place.Named("datastores", value, "name");
}

std::string DeviceName(const Place& place, const std::string& value) {
  return place.Named("devices", value, "name");
}

std::string DeviceOfHost(const Place& place, const std::string& value) {
  return DeviceName(place, value) + " of " + HostName(place, place.Named("devices", value, "host"));
}

/// A host's UUID as the host's name.
std::string UuidOrHost(const Place& place, const std::string& value) {
  const auto names =
      Texts(place.time.GetStore(), "SELECT name FROM hosts WHERE nodeUuid = ?", value);
  return names.empty() ? value : names.front();
}

/// The word for a number; the number when a lab could not have it.
template <typename Enum, typename Name>
std::string WordOf(const std::string& value, Name name) {
  try {
    return name(static_cast<Enum>(ParseNumber(value).value_or(-1)));
  } catch (const Tovrin::Lib::Korel::KorelCtlException&) {
    return value;
  }
}

std::string NodeType(const Place&, const std::string& value) {
  return WordOf<Tovrin::Korel::KorelNodeType>(value, NodeTypeName);
}

std::string AgentType(const Place&, const std::string& value) {
  return WordOf<Tovrin::Korel::KorelUnicastAgentType>(value, AgentTypeName);
}

std::string PolicyClass(const Place&, const std::string& value) {
  return WordOf<Tovrin::Korel::KorelPolicyClass>(
      value, HskCtl::Korel::KorelUtil::KorelPolicyClassToString);
}

/// One of the words, the first for 0.
std::string Among(const std::vector<std::string>& words, const std::string& value) {
  const auto number = static_cast<std::size_t>(ParseNumber(value).value_or(99));
  return number < words.size() ? words[number] : value;
}

std::string OccupantName(const Place&, const std::string& value) {
  return Among({"none", "partitions", "another host"}, value);
}

std::string EfficiencyName(const Place&, const std::string& value) {
  return Among({"none", "deduplication and compression", "compression"}, value);
}

std::string KeyState(const Place&, const std::string& value) {
  return Among({"missing", "loaded"}, value);
}

std::string WhichChecksum(const Place&, const std::string& value) {
  return Among({"none", "of the disk", "of the encryption metadata"}, value);
}

std::string Time(const Place&, const std::string& value) {
  return UtcTime(ParseNumber(value).value_or(0));
}

std::string Switch(const Place&, const std::string& value) {
  return value == "0" ? "false" : "true";
}

/// A column that cannot be shown as it is: a title that its name does not give, a word for its
/// value.
struct ColumnText {
  const char* column;
  const char* title = nullptr;
  std::string (*word)(const Place& place, const std::string& value) = nullptr;
};

constexpr auto kColumns = std::to_array<ColumnText>({
    {"host", nullptr, HostName},
    {"cluster", nullptr, ClusterUuid},
    {"datastore", nullptr, DatastoreName},
    {"device", nullptr, DeviceOfHost},
    {"cachingDevice", "disk group", DeviceName},
    {"uuid", "UUID", UuidOrHost},
    {"nodeUuid", "node UUID"},
    {"changedAt", nullptr, Time},
    {"nodeType", nullptr, NodeType},
    {"class", nullptr, PolicyClass},
    {"type", nullptr, AgentType},
    {"sizeGb", "size in GB"},
    {"usedGb", "data in GB"},
    {"occupant", nullptr, OccupantName},
    {"efficiency", nullptr, EfficiencyName},
    {"encryption", "encryption key", KeyState},
    {"wrongChecksum", nullptr, WhichChecksum},
    {"resyncThrottle", "resync throttle in Mbps"},
    {"resyncRate", "resync traffic in Mbps"},
    {"rekeyMinutes", "rekey interval in minutes"},
    {"agentV4", "agent group IPv4 address"},
    {"agentV6", "agent group IPv6 address"},
    {"masterV4", "master group IPv4 address"},
    {"masterV6", "master group IPv6 address"},
    {"ttl", "multicast time-to-live"},
    {"count", "calls that are struck"},
    {"afterCalls", "calls that are spared first"},
    {"delayMs", "delay in ms"},
});

const ColumnText* FindText(const std::string& column) {
  const auto* found = std::find_if(kColumns.begin(), kColumns.end(),
                                   [&](const ColumnText& each) { return each.column == column; });
  return found == kColumns.end() ? nullptr : found;
}

bool IsSwitch(const std::string& column) {
  return column.starts_with("is") || column.starts_with("carries") ||
         column.starts_with("supports");
}

}  // namespace

std::string TitleOf(const std::string& column) {
  const ColumnText* text = FindText(column);
  if (text != nullptr && text->title != nullptr) return text->title;
  std::string title;
  for (const char c : column.starts_with("is") ? column.substr(2) : column) {
    if (LowerCase(c) != c && !title.empty()) title += ' ';
    title += LowerCase(c);
  }
  return title;
}

std::string WordFor(const TimeOfChange& time, const std::string& table, const std::string& column,
                    const std::string& value, Moment moment) {
  const ColumnText* text = FindText(column);
  const auto word = text != nullptr ? text->word : IsSwitch(column) ? Switch : nullptr;
  return word == nullptr ? value : word({time, table, moment}, value);
}

}  // namespace lab
