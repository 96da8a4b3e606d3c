#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/store/Store.h"

namespace lab {

/// An operation that fails on purpose, or is slow: what people know as a fault of the lab.
struct InjectedFailure {
  std::string operation;
  std::string host{};                    ///< whose calls these are; empty: any host's
  std::optional<std::string> message{};  ///< what a call says that fails; none fails when absent
  std::optional<std::int64_t> count{};   ///< how many calls are struck; all when absent
  std::int64_t after = 0;                ///< how many calls are spared first
  std::int64_t delayMs = 0;              ///< how long each of the struck calls takes
  std::int64_t calls = 0;                ///< how many calls were counted, spared ones too

  /// How many calls are still to be struck; nothing when it is all.
  std::optional<std::int64_t> CallsLeft() const;
};

/// What a fault makes of a call.
struct Strike {
  std::optional<std::string> message;  ///< it fails with that message; goes on when absent
  std::chrono::milliseconds delay{0};  ///< after this time
};

/// Throws KorelCtlException when no operation has the name.
void CheckOperation(const std::string& name);

/// Lets the fault strike from now on, in the place of an earlier one of the operation and host;
/// `calls` begins at 0. Throws KorelCtlException when there is no such operation or host, or a
/// number is out of its range.
void AddInjectedFailure(Store& store, const InjectedFailure& failure);
/// By operation and host, those included that have struck as often as they were to.
std::vector<InjectedFailure> AllInjectedFailures(Store& store);
/// Removes the operation's fault of that host; without a host all that the operation has. Throws
/// KorelCtlException when there is none.
void RemoveInjectedFailure(Store& store, const std::string& operation,
                           const std::optional<std::string>& host);
void ClearInjectedFailures(Store& store);

/// Some fault waits for calls of the operation on that host.
bool AwaitsCall(Store& store, std::string_view operation, const std::string& host);
/// What is to become of this call, counted; nothing when it goes on as always. The host's own fault
/// comes before one of any host. While nothing may change, nothing is counted.
std::optional<Strike> TakeStrike(Store& store, std::string_view operation, const std::string& host);

}  // namespace lab
