#pragma once

#include <string_view>

#include "lab/OperationNames.h"

namespace lab {

/// One of kOperations, which the build makes of the names in the files of hostctl/; any other name
/// does not compile.
class OperationName {
 public:
  consteval OperationName(const char* name) : name_(name) {
    for (const std::string_view known : kOperations) {
      if (known == name_) return;
    }
    throw "no operation of this name is in kOperations";
  }

  constexpr std::string_view Get() const { return name_; }

 private:
  std::string_view name_;
};

}  // namespace lab
