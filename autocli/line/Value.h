#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/autocli/CallSpec.h"

namespace autocli {

/// The 64-bit decimal integer that `text` is, as a whole; nothing for any other text.
std::optional<std::int64_t> ReadInteger(std::string_view text);

/// One value read from its text, or why it is refused.
struct ReadResult {
  Corvex::CallSpec::Input::Value value;
  std::string fault;  ///< empty when `value` is one
};

/// Reads one value of the parameter (one element, of a list) and holds it against its constraint.
ReadResult ReadValueOf(const Corvex::CallSpec::ParameterSpec& parameter, const std::string& text);

}  // namespace autocli
