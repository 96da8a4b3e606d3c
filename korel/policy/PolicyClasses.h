#pragma once

#include <memory>
#include <string>

#include "platform/autocli/CallSpec.h"

namespace OstrelCli::KorelNamespace {

/// The names of the library's policy classes, in its order; null when it cannot tell them or has
/// none.
std::shared_ptr<Corvex::CallSpec::ParameterConstraint> PolicyClasses();

/// What a policy value is made of, as the end of a sentence; empty when the library cannot tell.
std::string PolicyKeys();

}  // namespace OstrelCli::KorelNamespace
