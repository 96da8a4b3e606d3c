#pragma once

#include <memory>
#include <string>
#include <vector>

#include "autocli/text/Sink.h"
#include "platform/autocli/AutoCli.h"

namespace autocli {

/// Runs the words of one command line against the tree: finds the node, parses, executes, writes.
/// `pluginFaults` are reported with whatever comes of it. Returns the exit status, the highest that
/// applies. Flushes nothing.
int RunLine(const std::vector<std::string>& words,
            const std::shared_ptr<Corvex::AutoCli::Namespace>& root,
            const std::vector<std::string>& pluginFaults, Sink& out, Sink& err);

}  // namespace autocli
