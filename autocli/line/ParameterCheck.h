#pragma once

#include <string>

#include "platform/autocli/CallSpec.h"

namespace autocli {

/// Why the parameters cannot be used, in words that name the first one that cannot; empty when they
/// can. InputSpec says what is refused.
std::string ProblemOf(const Corvex::CallSpec::InputSpec& spec);

}  // namespace autocli
