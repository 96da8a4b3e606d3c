#include "lab/model/InjectedFailures.h"

#include <algorithm>

#include "lab/base/Text.h"
#include "lab/model/Operations.h"
#include "lab/store/Query.h"

namespace lab {

void CheckOperation(const std::string& name) {
  if (std::find(kOperations.begin(), kOperations.end(), name) != kOperations.end()) return;
  Fail("no host control operation is named ", Quoted(name),
       DidYouMean(name, {kOperations.begin(), kOperations.end()}));
}

void AddInjectedFailure(Store& store, const InjectedFailure& failure) {
  CheckOperation(failure.operation);
  if (failure.remaining && *failure.remaining < 1) Fail("the count of a fault must be at least 1");
  Execute(store, "INSERT OR REPLACE INTO faults VALUES (?, ?, NULL)", failure.operation,
          failure.message);
  if (failure.remaining) {
    Execute(store, "UPDATE faults SET remaining = ? WHERE operation = ?", *failure.remaining,
            failure.operation);
  }
}

std::vector<InjectedFailure> AllInjectedFailures(Store& store) {
  std::vector<InjectedFailure> failures;
  for (const Row& row :
       Query(store, "SELECT operation, message, remaining FROM faults ORDER BY operation")) {
    failures.push_back({row.Text(0), row.Text(1), row.OptionalNumber(2)});
  }
  return failures;
}

void ClearInjectedFailures(Store& store) { Execute(store, "DELETE FROM faults"); }

bool HasInjectedFailure(Store& store, std::string_view operation) {
  return Exists(store, "SELECT 1 FROM faults WHERE operation = ?", std::string(operation));
}

std::optional<std::string> TakeInjectedFailure(Store& store, std::string_view operation) {
  const std::string name(operation);
  const auto messages = Texts(store, "SELECT message FROM faults WHERE operation = ?", name);
  if (messages.empty()) return std::nullopt;
  Execute(store, "DELETE FROM faults WHERE operation = ? AND remaining = 1", name);
  Execute(store, "UPDATE faults SET remaining = remaining - 1 WHERE operation = ?", name);
  return messages.front();
}

}  // namespace lab
