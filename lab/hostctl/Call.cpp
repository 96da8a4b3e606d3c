#include "lab/hostctl/Call.h"

#include "lab/model/Faults.h"

namespace lab {

using Tovrin::Lib::Korel::KorelCtlException;

void FailIfInjected(LabTransaction& transaction, OperationName operation) {
  const auto message = TakeFault(transaction.GetStore(), operation.Get());
  if (!message) return;
  transaction.Commit();
  throw InjectedFailure(*message);
}

void LogAndThrow(CallLog& log, OperationName operation, const Json& arguments) {
  try {
    ThrowActionable();
  } catch (const KorelCtlException& failure) {
    try {
      log.Write(operation, arguments, &failure.GetMessage());
    } catch (const KorelCtlException&) {
      // The operation's own failure says more than that its line is missing.
    }
    throw;
  }
}

}  // namespace lab
