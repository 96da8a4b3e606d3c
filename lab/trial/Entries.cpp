#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "lab/common/Text.h"
#include "lab/model/Clusters.h"
#include "lab/model/HostRoot.h"
#include "lab/store/Query.h"
#include "lab/trial/Changes.h"
#include "platform/hostctl/KorelUtil.h"

namespace lab {
namespace {

namespace fs = std::filesystem;

/// What a row of the table is to people, and the columns that tell it from others, the last being
/// what it belongs to when there are several.
struct TableText {
  const char* table;
  const char* kind;
  const char* names;
};

constexpr auto kTables = std::to_array<TableText>({
    {"hosts", "host", "name"},
    {"interfaces", "interface", "name,host"},
    {"devices", "device", "name,host"},
    {"claims", "claimed device", "device"},
    {"clusters", "cluster", "uuid"},
    {"memberships", "membership", "host,cluster"},
    {"datastores", "datastore", "name"},
    {"mounts", "mounted datastore", "name,cluster"},
    {"features", "feature", "name"},
    {"faults", "injected failure", "operation"},
    {"agents", "unicast agent", "type,address,host"},
    {"networkConfigs", "network configuration", "interface,host"},
    {"policies", "default policy", "class,host"},
    {"traceOptions", "trace option", "name,host"},
});

std::string NodeTypeText(std::int64_t value) {
  return NodeTypeName(static_cast<Tovrin::Korel::KorelNodeType>(value));
}

std::string PolicyClassText(std::int64_t value) {
  return HskCtl::Korel::KorelUtil::KorelPolicyClassToString(
      static_cast<Tovrin::Korel::KorelPolicyClass>(value));
}

std::string AgentTypeText(std::int64_t value) {
  constexpr std::array kTypes{"node", "witness", "metadata", "remote"};
  return kTypes.at(static_cast<std::size_t>(value));
}

std::string YesOrNo(std::int64_t value) { return value != 0 ? "true" : "false"; }

/// A column that cannot be shown as it is: a title that its name does not give, an expression for
/// what it refers to, a word for its number.
struct ColumnText {
  const char* column;
  const char* title = nullptr;
  const char* expression = nullptr;
  std::string (*word)(std::int64_t) = nullptr;
};

constexpr auto kColumns = std::to_array<ColumnText>({
    {"host", nullptr, "(SELECT name FROM hosts WHERE id = host)"},
    {"cluster", nullptr, "coalesce((SELECT uuid FROM clusters WHERE id = cluster), cluster)"},
    {"datastore", nullptr, "(SELECT name FROM datastores WHERE id = datastore)"},
    {"device", nullptr,
     "(SELECT devices.name || ' of ' || hosts.name FROM devices JOIN hosts ON hosts.id = host "
     "WHERE devices.id = device)"},
    {"cachingDevice", "disk group", "(SELECT name FROM devices WHERE id = cachingDevice)"},
    {"uuid", "UUID", "coalesce((SELECT name FROM hosts WHERE nodeUuid = uuid), uuid)"},
    {"nodeUuid", "node UUID"},
    {"changedAt", "changed at", "strftime('%Y-%m-%dT%H:%M:%SZ', changedAt, 'unixepoch')"},
    {"nodeType", nullptr, nullptr, NodeTypeText},
    {"class", nullptr, nullptr, PolicyClassText},
    {"type", nullptr, nullptr, AgentTypeText},
    {"sizeGb", "size in GB"},
    {"usedGb", "data in GB"},
    {"resyncThrottle", "resync throttle in Mbps"},
    {"resyncRate", "resync traffic in Mbps"},
    {"rekeyMinutes", "rekey interval in minutes"},
    {"agentV4", "agent group IPv4 address"},
    {"agentV6", "agent group IPv6 address"},
    {"masterV4", "master group IPv4 address"},
    {"masterV6", "master group IPv6 address"},
    {"ttl", "multicast time-to-live"},
    {"remaining", "calls that will still fail"},
});

bool IsSwitch(const std::string& column) {
  return column.starts_with("is") || column.starts_with("carries") ||
         column.starts_with("supports");
}

/// "isMounted" as "mounted", "claimedAt" as "claimed at".
std::string TitleFrom(const std::string& column) {
  std::string title;
  for (const char c : column.starts_with("is") ? column.substr(2) : column) {
    const bool isCapital = c >= 'A' && c <= 'Z';
    if (isCapital && !title.empty()) title += ' ';
    title += isCapital ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return title;
}

ColumnText TextOf(const std::string& column) {
  const auto* known = std::find_if(kColumns.begin(), kColumns.end(),
                                   [&](const ColumnText& each) { return each.column == column; });
  if (known != kColumns.end()) return *known;
  return {nullptr, nullptr, nullptr, IsSwitch(column) ? YesOrNo : nullptr};
}

/// One table as it is to be read.
class TableReader {
 public:
  TableReader(Store& store, const std::string& table) : store_(store), table_(table), kind_(table) {
    const auto* known = std::find_if(kTables.begin(), kTables.end(),
                                     [&](const TableText& each) { return each.table == table; });
    columns_ = Texts(store, "SELECT name FROM pragma_table_info(?) WHERE name <> 'id'", table);
    names_ = Texts(store, "SELECT name FROM pragma_table_info(?) WHERE pk > 0", table);
    key_ = Joined(names_, ", ");
    if (known == kTables.end()) return;
    kind_ = known->kind;
    names_ = Split(known->names, ',');
  }

  void AppendTo(std::vector<Entry>& entries) {
    std::string sql = "SELECT json_array('" + table_ + "', " + key_ + ")";
    for (const std::string& column : columns_) {
      const char* expression = TextOf(column).expression;
      sql += ", " + (expression == nullptr ? column : expression);
    }
    Rows rows(store_, (sql + " FROM " + table_).c_str());
    while (rows.executeStep()) entries.push_back(EntryOf(rows));
  }

 private:
  Entry EntryOf(Rows& row) const {
    Entry entry{row.getColumn(0).getString(), kind_, {}};
    std::vector<std::string> names(names_.size());
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      const SQLite::Column value = row.getColumn(static_cast<int>(i) + 1);
      if (value.isNull()) continue;
      const ColumnText text = TextOf(columns_[i]);
      const std::string shown = text.word ? text.word(value.getInt64()) : value.getString();
      const auto name = std::find(names_.begin(), names_.end(), columns_[i]);
      if (name != names_.end()) names[static_cast<std::size_t>(name - names_.begin())] = shown;
      entry.fields.push_back(
          {text.title ? text.title : TitleFrom(columns_[i]), shown, name != names_.end()});
    }
    for (const std::string& name : names) {
      const bool isOwner = names.size() > 1 && &name == &names.back();
      entry.subject += (isOwner ? " of " : " ") + name;
    }
    return entry;
  }

  Store& store_;
  std::string table_;
  std::string kind_;
  std::string key_;
  std::vector<std::string> columns_;
  std::vector<std::string> names_;
};

Entry EntryOfFile(const fs::path& path, const fs::path& place) {
  const std::string host = place.begin()->string();
  Entry entry{
      "file " + place.string(), "file " + place.string().substr(host.size()) + " of " + host, {}};
  for (int number = 1; const std::string& line : LinesOfFile(path)) {
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos) {
      entry.fields.push_back({"line " + std::to_string(number), line});
    } else {
      entry.fields.push_back({line.substr(0, equals), line.substr(equals + 1)});
    }
    ++number;
  }
  return entry;
}

}  // namespace

std::vector<std::string> LinesOfFile(const std::string& path) {
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file && errno != ENOENT) {
    Fail("cannot read ", Quoted(path), ": ", std::generic_category().message(errno));
  }
  // Or a line for which there was no memory would pass for the end.
  file.exceptions(std::ios::badbit);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

std::vector<Entry> RowsOf(Store& store) {
  std::vector<Entry> entries;
  for (const std::string& table :
       Texts(store, "SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY rowid")) {
    TableReader(store, table).AppendTo(entries);
  }
  return entries;
}

std::vector<Entry> FilesOf(const Store& store) {
  std::vector<Entry> entries;
  const fs::path roots = RootsOf(store);
  if (!fs::exists(roots)) return entries;
  for (const auto& file : fs::recursive_directory_iterator(roots)) {
    if (!file.is_regular_file()) continue;
    entries.push_back(EntryOfFile(file.path(), file.path().lexically_relative(roots)));
  }
  std::sort(entries.begin(), entries.end(),
            [](const Entry& one, const Entry& other) { return one.key < other.key; });
  return entries;
}

}  // namespace lab
