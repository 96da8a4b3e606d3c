#include "lab/store/Memory.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/VariadicBind.h>

#include <ctime>

#include "lab/base/CommandLine.h"
#include "lab/base/Text.h"
#include "lab/store/Query.h"
#include "lab/store/Schema.h"

namespace lab {
namespace {

constexpr std::int64_t kMostEntries = 1000;
constexpr std::int64_t kMostBytes = 8 << 20;
constexpr std::size_t kMostText = 4096;
constexpr std::int64_t kMostNumber = std::int64_t{1} << 53;

/// A text as it is kept: the beginning of a very long one.
std::string Kept(const std::string& text) {
  if (text.size() <= kMostText) return text;
  std::size_t end = kMostText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80) --end;
  return text.substr(0, end) + "...";
}

struct Newest {
  std::int64_t number = 0;
  std::int64_t total = 0;
};

Newest FindNewest(Store& store) {
  Query row(store, "SELECT number, total FROM history ORDER BY number DESC LIMIT 1");
  if (!row.Next()) return {};
  return {row.Number(0), row.Number(1)};
}

/// Looks at the oldest entry alone, as long as that one goes: the totals say what all of them hold.
void Forget(Store& store, const Newest& newest) {
  while (true) {
    std::int64_t oldest = 0;
    {
      Query row(store, "SELECT number, total - size FROM history ORDER BY number LIMIT 1");
      row.Next();
      oldest = row.Number(0);
      const bool isTooMany =
          oldest <= newest.number - kMostEntries || row.Number(1) < newest.total - kMostBytes;
      if (!isTooMany || oldest == newest.number) return;
    }
    Execute(store, "DELETE FROM history WHERE number = ?", oldest);
  }
}

std::vector<Entry> ReadEntries(Store& store, const std::string& sql, std::int64_t value) {
  std::vector<Entry> entries;
  for (const Row& row : Query(store, sql.c_str(), value)) {
    entries.push_back({row.Number(0), row.Number(1), row.Number(2), row.Text(3), row.Text(4),
                       row.Text(5), static_cast<int>(row.Number(6)), row.OptionalText(7)});
  }
  return entries;
}

constexpr const char* kSelect =
    "SELECT number, command, time, host, line, operation, version, changes FROM history ";

}  // namespace

void Remember(Store& store, const Origin& origin, const Changeset* changes) {
  const CommandLine command = CurrentCommand();
  Newest newest = FindNewest(store);
  if (newest.number < 0 || newest.number > kMostNumber || newest.total < 0 ||
      newest.total > kMostNumber) {
    // No lab wrote these. A memory that cannot go on begins again.
    Execute(store, "DELETE FROM history");
    newest = {};
  }
  const std::int64_t number = ++newest.number;
  std::int64_t first = store.GetFirstEntry(command.number);
  if (first == 0) first = number;
  // What made the lab is no part of the command that came first: that one can be taken back.
  if (changes != nullptr) store.SetFirstEntry(command.number, first);
  const std::string line = Kept(command.text);
  const std::string operation = Kept(origin.operation);
  const auto size = static_cast<std::int64_t>(line.size() + operation.size() +
                                              (changes == nullptr ? 0 : changes->size()));
  newest.total += size;
  auto insert = store.Take("INSERT INTO history VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
  SQLite::bind(*insert, number, first, static_cast<std::int64_t>(std::time(nullptr)), origin.host,
               line, operation, kSchemaVersion, size, newest.total);
  if (changes != nullptr) {
    insert->bindNoCopy(10, changes->data(), static_cast<int>(changes->size()));
  }
  insert->exec();
  store.Keep(std::move(insert));
  Forget(store, newest);
}

std::vector<Entry> NewestEntries(Store& store, std::int64_t most) {
  static const auto& sql = *new std::string(std::string(kSelect) + "ORDER BY number DESC LIMIT ?");
  return ReadEntries(store, sql, most);
}

std::vector<Entry> EntriesAfter(Store& store, std::int64_t number) {
  static const auto& sql =
      *new std::string(std::string(kSelect) + "WHERE number > ? ORDER BY number DESC");
  return ReadEntries(store, sql, number);
}

std::int64_t NewestEntry(Store& store) { return FindNewest(store).number; }

}  // namespace lab
