#pragma once

#include <string>
#include <vector>

#include "platform/autocli/AutoCli.h"

namespace autocli {

/// The name that people type.
inline constexpr const char* kProgram = "autocli";

/// What `autocli --help` says: the top-level namespaces, the global options, the exit statuses.
std::string RootHelp(const Corvex::AutoCli::Namespace& root,
                     const Corvex::CallSpec::InputSpec& globalOptions);

/// What help says of the namespace at `path`, words joined by blanks.
std::string NamespaceHelp(const Corvex::AutoCli::Namespace& space, const std::string& path);

/// What help says of the command at `path`.
std::string CommandHelp(const Corvex::AutoCli::CommandSpec& command,
                        const Corvex::CallSpec::InputSpec& input, const std::string& path);

/// "usage: ..." on one line: required options first, others in brackets. `input` is null for a
/// namespace; `path` is empty for the root.
std::string UsageLine(const std::string& path, const Corvex::CallSpec::InputSpec* input);

}  // namespace autocli
