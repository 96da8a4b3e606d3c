#pragma once

#include <memory>

#include "platform/autocli/CallSpec.h"

/// What commands of "korel policy" share.
namespace OstrelCli::KorelNamespace {

/// The names of the library's policy classes, in its order.
std::shared_ptr<Corvex::CallSpec::ParameterConstraint> PolicyClasses();

}  // namespace OstrelCli::KorelNamespace
