#pragma once

#include <string>

#include "platform/autocli/CallSpec.h"

namespace autocli {

/// The allowed values in short: joined by ", ", or "MIN-MAX", "-1 to MAX" where a
/// hyphen would be read as a minus; empty without a constraint.
std::string AllowedValues(const Corvex::CallSpec::ParameterSpec& parameter);

/// A line per allowed value with its description, each ended by a line feed; of a range, one line.
std::string DescribedValues(const Corvex::CallSpec::ParameterSpec& parameter);

/// The description with "%ENUM%" replaced by the allowed values in short, and "%FULLENUM%" by the
/// described ones, from a line of their own on.
std::string ExpandedDescription(const Corvex::CallSpec::ParameterSpec& parameter);

}  // namespace autocli
