#pragma once

#include <memory>

#include "platform/autocli/CallSpec.h"

namespace OstrelCli::KorelNamespace {

/// The names of the library's policy classes, in its order; null when it cannot tell them or has
/// none.
std::shared_ptr<Corvex::CallSpec::ParameterConstraint> PolicyClasses();

}  // namespace OstrelCli::KorelNamespace
