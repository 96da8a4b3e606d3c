#pragma once

#include "platform/autocli/Declare.h"

/// What commands of "korel storage" share.
namespace OstrelCli::KorelNamespace {

/// How many of the options "disk", "ssd" and "uuid" were given.
int CountTargets(const Corvex::Declare::InputPtr& input);

}  // namespace OstrelCli::KorelNamespace
