#pragma once

#include "platform/autocli/Declare.h"

namespace OstrelCli::KorelNamespace {

/// How many of the options "disk", "ssd" and "uuid" were given.
int CountTargets(const Corvex::Declare::InputPtr& input);

}  // namespace OstrelCli::KorelNamespace
