#pragma once

#include <string>
#include <vector>

#include "autocli/base/Style.h"
#include "autocli/help/Explain.h"
#include "autocli/line/Vocabulary.h"
#include "platform/autocli/AutoCli.h"

namespace autocli {

/// What help says of the program: the top-level namespaces, the tools that have a description, the
/// global options, the exit statuses.
std::string RootHelp(const Vocabulary& vocabulary, const Corvex::CallSpec::InputSpec& globalOptions,
                     const Style& style);

/// What help says of the namespace at `path`, words joined by blanks.
std::string NamespaceHelp(const Vocabulary& vocabulary, const Corvex::AutoCli::Namespace& space,
                          const std::string& path, const Style& style);

/// What help says of the command.
std::string CommandHelp(const Vocabulary& vocabulary, const CommandText& command,
                        const Style& style);

/// What help says of a tool that has a description.
std::string ToolHelp(const Vocabulary& vocabulary, const Tool& tool, const Style& style);

/// "usage: ..." on one line, with what may be left out in brackets. `specs` are empty for a
/// namespace; `path` is empty for the root.
std::string UsageLine(const Vocabulary& vocabulary, const std::string& path, const Specs& specs,
                      const CommandNotes& notes);

/// The words of a tool's line after the program's name, as a usage line shows them.
std::string ToolUsage(const Tool& tool);

}  // namespace autocli
