#pragma once

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
std::string LoggedText(OperationName operation, const Json& arguments);
/// Within a catch block: logs what is being handled and throws it as a KorelCtlException.
[[noreturn]] void LogAndThrow(CallLog& log, OperationName operation, const Json& arguments);

/// Runs one host control operation, `work(Store&, const Host&)`, and returns what it returns. Gives
/// it a transaction, its line in the call log and its injected failure. Every exception leaves as a
/// KorelCtlException. `arguments` are the operation's, in call order, for the log: UUIDs as text,
/// enums as numbers, records as objects, out-parameters left out.
template <typename Work>
std::invoke_result_t<Work, Store&, const Host&> Call(OperationName operation, const Json& arguments,
                                                     const Work& work) {
  CallLog log;
  try {
    // Not in the operation's own transaction: what was written before it stays when it fails.
    TakeInHostFiles();
    LabTransaction transaction(OnlyReads(operation) ? Access::Read : Access::Change);
    FailIfInjected(transaction, operation);
    Store& store = transaction.GetStore();
    const Host host = CurrentHost(store);
    const auto commit = [&] {
      transaction.Commit([&] { return LoggedText(operation, arguments); });
      log.Write(operation, arguments, nullptr);
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
    LogAndThrow(log, operation, arguments);
  }
}

}  // namespace lab
