#pragma once

#include <string>

#include "lab/store/Changeset.h"

namespace lab {

/// Another lab in the schema "other", beside the process's own, for reading alone: a transaction
/// that changes would lock it for writing, too.
class Attached {
 public:
  /// Outside of a transaction.
  Attached(Store& store, const std::string& path);
  ~Attached();
  Attached(const Attached&) = delete;
  Attached& operator=(const Attached&) = delete;

  /// Within a transaction: what makes the process's lab of the other one.
  Changeset Difference() const;
  /// Within a transaction for changes: its faults have struck as often as those of the other one.
  void TakeFaultCalls() const;

 private:
  Store& store_;
};

}  // namespace lab
