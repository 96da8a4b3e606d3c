#pragma once

#include "platform/autocli/Declare.h"

namespace OstrelCli::KorelNamespace {

/// The command tree below the framework's root, in registration order.
Corvex::Declare::Node Tree();

}  // namespace OstrelCli::KorelNamespace
