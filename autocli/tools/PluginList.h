#pragma once

#include "autocli/tools/ToolCall.h"

namespace autocli {

/// `--plugins`: lists the plug-ins that were found, in the order of loading: which were loaded,
/// from where, in which version, and which were refused and why. Takes the options that every
/// command line takes.
int PluginsTool(const ToolCall& call);

}  // namespace autocli
