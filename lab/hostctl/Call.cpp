#include "lab/hostctl/Call.h"

#include "lab/model/InjectedFailures.h"

namespace lab {

using Tovrin::Lib::Korel::KorelCtlException;

void FailIfInjected(LabTransaction& transaction, OperationName operation) {
  if (!HasInjectedFailure(transaction.GetStore(), operation.Get())) return;
  // One that only reads cannot count.
  transaction.BeginAgain(Access::Change);
  const auto message = TakeInjectedFailure(transaction.GetStore(), operation.Get());
  if (!message) return;
  transaction.Commit([&] { return std::string(operation.Get()) + " fails on purpose"; });
  throw FailedOnPurpose(*message);
}

std::string TextOf(OperationName operation, const Json& arguments) {
  return std::string(operation.Get()) + " " +
         arguments.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void LogAndThrow(const std::function<void(const std::string& message)>& write) {
  try {
    ThrowActionable();
  } catch (const KorelCtlException& failure) {
    try {
      write(failure.GetMessage());
    } catch (const KorelCtlException&) {
      // The operation's own failure says more than that its line is missing.
    }
    throw;
  }
}

}  // namespace lab
