#pragma once

#include <memory>
#include <string>

#include "platform/autocli/AutoCli.h"

namespace lab {

using CommandPtr = std::shared_ptr<Corvex::AutoCli::CommandSpec>;

/// The command of `autocli lab` at that path ("host add"). Throws std::invalid_argument when there
/// is none.
CommandPtr NewCommand(const std::string& path);

}  // namespace lab
