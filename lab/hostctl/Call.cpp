#include "lab/hostctl/Call.h"

#include <thread>

#include "lab/model/InjectedFailures.h"

namespace lab {

using Tovrin::Lib::Korel::KorelCtlException;

namespace {

/// Ends the transaction, takes the strike's time, and throws its failure.
void Bear(LabTransaction& transaction, const std::optional<Strike>& strike) {
  transaction.CommitUnremembered();
  if (!strike) return;
  std::this_thread::sleep_for(strike->delay);
  if (strike->message) throw FailedOnPurpose(*strike->message);
}

}  // namespace

std::optional<Host> StrikeCall(LabTransaction& transaction, OperationName operation, Access access,
                               std::optional<Host> host) {
  Store& store = transaction.GetStore();
  const std::string name = host ? host->name : NamedHost();
  if (!AwaitsCall(store, operation.Get(), name)) return host;
  // One that only reads cannot count.
  transaction.BeginAgain(Access::Change);
  Bear(transaction, TakeStrike(store, operation.Get(), name));
  transaction.BeginAgain(access);
  return FindCurrentHost(store);
}

void StrikeConversion(OperationName conversion) {
  try {
    LabTransaction transaction(Access::Read);
    StrikeCall(transaction, conversion, Access::Read, FindCurrentHost(transaction.GetStore()));
  } catch (const FailedOnPurpose&) {
    throw;
  } catch (...) {
    // Whoever needs the lab says what is wrong with it.
  }
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
