#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "lab/base/Text.h"
#include "lab/hostctl/Arguments.h"
#include "lab/hostctl/CallLog.h"
#include "lab/hostctl/HandedOut.h"
#include "lab/model/Lab.h"

namespace lab {

/// What `lab fault add` makes an operation throw.
class FailedOnPurpose : public Tovrin::Lib::Korel::KorelCtlException {
 public:
  using KorelCtlException::KorelCtlException;
};

/// The operations that change nothing are known by their names.
constexpr bool OnlyReads(OperationName operation) {
  for (const std::string_view beginning : {"Get", "Is", "List", "Fetch"}) {
    if (operation.Get().starts_with(beginning)) return true;
  }
  return false;
}

/// Does to this call of the operation what a fault makes of it: throws its failure, or takes its
/// time, during which others may use the lab. All processes share the count. The transaction then
/// is a new one, for `access`. `host` is the one that the call is for; returns it as it is now.
std::optional<Host> StrikeCall(LabTransaction& transaction, OperationName operation, Access access,
                               std::optional<Host> host);
/// Throws the failure that the conversion is to have, or takes the time. Conversions need no lab:
/// when it cannot be used nothing is done.
void StrikeConversion(OperationName conversion);
/// The operation and its arguments, for the memory.
std::string TextOf(OperationName operation, const Json& arguments);
/// Within a catch block: throws what was caught as a KorelCtlException. Logs it by
/// `write(message)`, whose own failure is ignored.
[[noreturn]] void LogAndThrow(const std::function<void(const std::string& message)>& write);

/// Calls the function with the store and the host, as far as it asks for them, and these arguments.
template <typename Function, typename... Given>
decltype(auto) Perform(const Function& function, Store& store, const Host& host,
                       const Given&... given) {
  if constexpr (std::is_invocable_v<const Function&, Store&, const Host&, const Given&...>) {
    return function(store, host, given...);
  } else if constexpr (std::is_invocable_v<const Function&, Store&, const Given&...>) {
    return function(store, given...);
  } else {
    return function(given...);
  }
}

/// Runs one host control operation, `function(store, host, given...)`, which may do without the
/// host, or without both, and returns what it returns. Gives it a transaction, its line in the call
/// log and its injected failure. Every exception leaves as a KorelCtlException. `arguments` are the
/// operation's: UUIDs stand as text, enums as numbers, records as objects, out-parameters are left
/// out.
template <typename... Values, typename Function, typename... Given>
auto Call(OperationName operation, const Arguments<Values...>& arguments, const Function& function,
          const Given&... given) {
  using Result =
      decltype(Perform(function, std::declval<Store&>(), std::declval<const Host&>(), given...));
  const Access access = OnlyReads(operation) ? Access::Read : Access::Change;
  CallLog log;
  std::string hostName = NamedHost();
  const auto write = [&](const std::string* error) {
    if (log.IsOpen()) log.Write({hostName, operation, arguments(), error});
  };
  try {
    // Not in the operation's own transaction: what was written before it stays when it fails.
    TakeInHostFiles();
    LabTransaction transaction(access);
    Store& store = transaction.GetStore();
    std::optional<Host> found = FindCurrentHost(store);
    if (found) hostName = found->name;
    found = StrikeCall(transaction, operation, access, std::move(found));
    const Host host = found ? *found : CurrentHost(store);
    const auto commit = [&] {
      transaction.Commit([&] { return TextOf(operation, arguments()); });
      write(nullptr);
    };
    if constexpr (std::is_void_v<Result>) {
      Perform(function, store, host, given...);
      commit();
    } else {
      Result result = Perform(function, store, host, given...);
      commit();
      return result;
    }
  } catch (...) {
    LogAndThrow([&](const std::string& message) { write(&message); });
  }
}

/// The same for an operation whose arguments are what the function is given.
template <typename Function, typename... Given>
auto Call(OperationName operation, const Function& function, const Given&... given) {
  return Call(operation, Arguments(given...), function, given...);
}

}  // namespace lab
