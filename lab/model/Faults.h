#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/store/Store.h"

namespace lab {

/// An operation that fails on purpose.
struct Fault {
  std::string operation;
  std::string message;
  std::optional<std::int64_t> remaining;  ///< how many more calls fail; all when absent
};

/// Throws KorelCtlException when no host control operation has the name.
void CheckOperation(const std::string& name);

/// Makes the next `count` calls of the operation fail with that message, all without a count;
/// replaces an earlier fault of the operation. Throws KorelCtlException when there is no such
/// operation or the count is not positive.
void AddFault(Store& store, const Fault& fault);
/// By operation.
std::vector<Fault> AllFaults(Store& store);
void ClearFaults(Store& store);
/// Calls of the operation are to fail.
bool HasFault(Store& store, std::string_view operation);
/// The message with which this call of the operation is to fail, counted down; nothing when it is
/// to go on.
std::optional<std::string> TakeFault(Store& store, std::string_view operation);

}  // namespace lab
