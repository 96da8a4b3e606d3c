#pragma once

#include <string>

#include "platform/autocli/CallSpec.h"

namespace autocli {

/// The allowed values in short: joined by ", ", or "MIN-MAX"; empty without a constraint.
std::string AllowedValues(const Corvex::CallSpec::ParameterSpec& parameter);

/// The description with "%ENUM%" replaced by the allowed values in short, and "%FULLENUM%" by a
/// line per value with its description, each line ended by a line feed.
std::string ExpandedDescription(const Corvex::CallSpec::ParameterSpec& parameter);

}  // namespace autocli
