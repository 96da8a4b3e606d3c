#include "lab/model/Faults.h"

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

void AddFault(Store& store, const Fault& fault) {
  CheckOperation(fault.operation);
  if (fault.remaining && *fault.remaining < 1) Fail("the count of a fault must be at least 1");
  Execute(store, "INSERT OR REPLACE INTO faults VALUES (?, ?, NULL)", fault.operation,
          fault.message);
  if (fault.remaining) {
    Execute(store, "UPDATE faults SET remaining = ? WHERE operation = ?", *fault.remaining,
            fault.operation);
  }
}

std::vector<Fault> AllFaults(Store& store) {
  std::vector<Fault> faults;
  for (const Row& row :
       Query(store, "SELECT operation, message, remaining FROM faults ORDER BY operation")) {
    faults.push_back({row.Text(0), row.Text(1), row.OptionalNumber(2)});
  }
  return faults;
}

void ClearFaults(Store& store) { Execute(store, "DELETE FROM faults"); }

bool HasFault(Store& store, std::string_view operation) {
  return Exists(store, "SELECT 1 FROM faults WHERE operation = ?", std::string(operation));
}

std::optional<std::string> TakeFault(Store& store, std::string_view operation) {
  const std::string name(operation);
  const auto messages = Texts(store, "SELECT message FROM faults WHERE operation = ?", name);
  if (messages.empty()) return std::nullopt;
  Execute(store, "DELETE FROM faults WHERE operation = ? AND remaining = 1", name);
  Execute(store, "UPDATE faults SET remaining = remaining - 1 WHERE operation = ?", name);
  return messages.front();
}

}  // namespace lab
