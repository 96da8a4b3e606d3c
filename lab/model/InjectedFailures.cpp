#include "lab/model/InjectedFailures.h"

#include <algorithm>

#include "lab/base/Text.h"
#include "lab/model/Hosts.h"
#include "lab/model/Operations.h"
#include "lab/store/LabFile.h"
#include "lab/store/Memory.h"
#include "lab/store/Query.h"

namespace lab {
namespace {

constexpr std::int64_t kMostDelayMs = 3600000;

/// The faults of an operation that this host's calls come to, but for those that have struck as
/// often as they were to; the host's own first.
constexpr const char* kAwaiting =
    "SELECT faults.host, message, count, afterCalls, delayMs, faults.id, ifnull(calls, 0) "
    "FROM faults LEFT JOIN faultCalls USING (operation, host, id) "
    "WHERE operation = ? AND host IN ('', ?) "
    "AND (count IS NULL OR ifnull(calls, 0) < afterCalls + count) ORDER BY host DESC";

struct Awaiting {
  InjectedFailure failure;
  std::int64_t id = 0;
};

std::vector<Awaiting> FaultsAwaiting(Store& store, const std::string& operation,
                                     const std::string& host) {
  std::vector<Awaiting> faults;
  for (const Row& row : Query(store, kAwaiting, operation, host)) {
    faults.push_back({{operation, row.Text(0), row.OptionalText(1), row.OptionalNumber(2),
                       row.Number(3), row.Number(4), row.Number(6)},
                      row.Number(5)});
  }
  return faults;
}

void Count(Store& store, const Awaiting& fault) {
  // What strikes for ever need not count for ever.
  if (!fault.failure.count && fault.failure.calls >= fault.failure.after) return;
  Execute(store,
          "INSERT INTO faultCalls VALUES (?, ?, ?, 1) "
          "ON CONFLICT DO UPDATE SET calls = calls + 1",
          fault.failure.operation, fault.failure.host, fault.id);
}

}  // namespace

std::optional<std::int64_t> InjectedFailure::CallsLeft() const {
  if (!count) return std::nullopt;
  return *count - std::max<std::int64_t>(calls - after, 0);
}

void CheckOperation(const std::string& name) {
  if (std::find(kOperations.begin(), kOperations.end(), name) != kOperations.end()) return;
  Fail("no host control operation is named ", Quoted(name),
       DidYouMean(name, {kOperations.begin(), kOperations.end()}),
       "; 'autocli lab fault operations' lists them");
}

void AddInjectedFailure(Store& store, const InjectedFailure& failure) {
  CheckOperation(failure.operation);
  if (!failure.host.empty()) HostNamed(store, failure.host);
  if (failure.count && *failure.count < 1) Fail("the count of a fault must be at least 1");
  if (failure.after < 0) Fail("the calls that a fault spares cannot be fewer than 0");
  if (failure.delayMs < 0 || failure.delayMs > kMostDelayMs) {
    Fail("the delay of a fault must be 0 to ", std::to_string(kMostDelayMs), " milliseconds");
  }
  if (!failure.message && failure.delayMs == 0) {
    Fail("a fault needs a message, with which calls fail, or a delay, or both");
  }
  Execute(store, "DELETE FROM faults WHERE operation = ? AND host = ?", failure.operation,
          failure.host);
  // The number of the entry that this will be: no other fault has it or will have it.
  Execute(store,
          "INSERT INTO faults (operation, host, afterCalls, delayMs, id) VALUES (?, ?, ?, ?, ?)",
          failure.operation, failure.host, failure.after, failure.delayMs, NewestEntry(store) + 1);
  if (failure.message) {
    Execute(store, "UPDATE faults SET message = ? WHERE operation = ? AND host = ?",
            *failure.message, failure.operation, failure.host);
  }
  if (failure.count) {
    Execute(store, "UPDATE faults SET count = ? WHERE operation = ? AND host = ?", *failure.count,
            failure.operation, failure.host);
  }
}

std::vector<InjectedFailure> AllInjectedFailures(Store& store) {
  std::vector<InjectedFailure> failures;
  for (const Row& row : Query(store,
                              "SELECT operation, host, message, count, afterCalls, delayMs, "
                              "ifnull(calls, 0) FROM faults LEFT JOIN faultCalls "
                              "USING (operation, host, id) ORDER BY operation, host")) {
    failures.push_back({row.Text(0), row.Text(1), row.OptionalText(2), row.OptionalNumber(3),
                        row.Number(4), row.Number(5), row.Number(6)});
  }
  return failures;
}

void RemoveInjectedFailure(Store& store, const std::string& operation,
                           const std::optional<std::string>& host) {
  CheckOperation(operation);
  const int removed =
      host ? Execute(store, "DELETE FROM faults WHERE operation = ? AND host = ?", operation, *host)
           : Execute(store, "DELETE FROM faults WHERE operation = ?", operation);
  if (removed > 0) return;
  Fail("there is no fault of ", operation, host ? " on host " + Quoted(*host) : "",
       "; 'autocli lab fault list' lists them");
}

void ClearInjectedFailures(Store& store) { Execute(store, "DELETE FROM faults"); }

bool AwaitsCall(Store& store, std::string_view operation, const std::string& host) {
  return Exists(store, kAwaiting, std::string(operation), host);
}

std::optional<Strike> TakeStrike(Store& store, std::string_view operation,
                                 const std::string& host) {
  for (const Awaiting& fault : FaultsAwaiting(store, std::string(operation), host)) {
    if (MayChange()) Count(store, fault);
    const InjectedFailure& failure = fault.failure;
    if (failure.calls < failure.after) continue;
    return Strike{failure.message, std::chrono::milliseconds(failure.delayMs)};
  }
  return std::nullopt;
}

}  // namespace lab
