#pragma once

#include <string>
#include <vector>

#include "platform/autocli/AutoCli.h"

namespace autocli {

/// The tree from `node` down as one JSON document, texts as they were declared, ended by a line
/// feed. `name` stands for the name of a node that has none, the root. A command whose
/// specifications cannot be had is described without them, and adds a message to `problems`.
std::string Describe(Corvex::AutoCli::NamespaceNode& node, const std::string& name,
                     std::vector<std::string>& problems);

}  // namespace autocli
