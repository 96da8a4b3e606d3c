#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>
#include <utility>

#include "lab/common/Text.h"
#include "lab/hostctl/CallLog.h"
#include "lab/hostctl/HandedOut.h"
#include "lab/model/Lab.h"

namespace lab {

/// What `lab fault add` makes an operation throw.
class InjectedFailure : public Tovrin::Lib::Korel::KorelCtlException {
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

/// Throws the operation's injected failure, if there is one, counted down for all processes.
void FailIfInjected(LabTransaction& transaction, OperationName operation);
/// The operation and its arguments, for the memory.
std::string TextOf(OperationName operation, const Json& arguments);
/// Within a catch block: throws what is being handled as a KorelCtlException. Logs it by
/// `write(message)`, which may fail: the operation's own failure says more than that.
[[noreturn]] void LogAndThrow(const std::function<void(const std::string& message)>& write);

/// Runs one host control operation, `work(Store&, const Host&)`, and returns what it returns. Gives
/// it a transaction, its line in the call log and its injected failure. Every exception leaves as a
/// KorelCtlException. `arguments()` are the operation's, in call order: UUIDs as text, enums as
/// numbers, records as objects, out-parameters left out.
template <typename AskArguments, typename Work>
std::invoke_result_t<Work, Store&, const Host&> Call(OperationName operation,
                                                     const AskArguments& arguments,
                                                     const Work& work) {
  CallLog log;
  const auto write = [&](const std::string* error) {
    if (log.IsOpen()) log.Write(operation, arguments(), error);
  };
  try {
    // Not in the operation's own transaction: what was written before it stays when it fails.
    TakeInHostFiles();
    LabTransaction transaction(OnlyReads(operation) ? Access::Read : Access::Change);
    FailIfInjected(transaction, operation);
    Store& store = transaction.GetStore();
    const Host host = CurrentHost(store);
    const auto commit = [&] {
      transaction.Commit([&] { return TextOf(operation, arguments()); });
      write(nullptr);
    };
    if constexpr (std::is_void_v<std::invoke_result_t<Work, Store&, const Host&>>) {
      work(store, host);
      commit();
    } else {
      auto result = work(store, host);
      commit();
      return result;
    }
  } catch (...) {
    LogAndThrow([&](const std::string& message) { write(&message); });
  }
}

}  // namespace lab
