#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/store/Store.h"

namespace lab {

/// An operation that fails on purpose: what people know as a fault of the lab.
struct InjectedFailure {
  std::string operation;
  std::string message;
  std::optional<std::int64_t> remaining;  ///< how many more calls fail; all when absent
};

/// Throws KorelCtlException when no host control operation has the name.
void CheckOperation(const std::string& name);

/// Makes the next `count` calls of the operation fail with that message, all without a count;
/// replaces an earlier failure of the operation. Throws KorelCtlException when there is no such
/// operation or the count is not positive.
void AddInjectedFailure(Store& store, const InjectedFailure& failure);
/// By operation.
std::vector<InjectedFailure> AllInjectedFailures(Store& store);
void ClearInjectedFailures(Store& store);
/// Calls of the operation are to fail.
bool HasInjectedFailure(Store& store, std::string_view operation);
/// The message with which this call of the operation is to fail, counted down; nothing when it is
/// to go on.
std::optional<std::string> TakeInjectedFailure(Store& store, std::string_view operation);

}  // namespace lab
