#pragma once

#include "platform/autocli/Declare.h"

namespace lab {

/// Everything below `autocli lab`.
Corvex::Declare::Node Tree();

}  // namespace lab
