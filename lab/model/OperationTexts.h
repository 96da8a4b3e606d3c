#pragma once

#include <span>
#include <string_view>

namespace lab {

/// An operation that can be made to fail, and what it does.
struct OperationText {
  std::string_view operation;
  std::string_view text;
};

/// Of every operation, in the order of their names.
std::span<const OperationText> OperationTexts();

}  // namespace lab
