#include "autocli/program/Tools.h"

#include "autocli/run/Driver.h"
#include "autocli/tools/Batch.h"
#include "autocli/tools/Complete.h"
#include "autocli/tools/PluginList.h"
#include "autocli/tools/ReferencePages.h"
#include "autocli/tools/Scripts.h"
#include "autocli/tools/ToolCall.h"

namespace autocli {

namespace {

/// Asking for help belongs to the line of a command, and is read with it.
int RunHelp(const ToolCall& call) {
  std::vector<std::string> words = call.words;
  words.insert(words.begin(), kHelpTool);
  return RunLine(words, call.vocabulary, FaultsOf(call.plugins), call.out, call.err);
}

constexpr Tool kTools[] = {
    {kHelpTool, "[PATH...]", "Say what can follow a path, or what a command does.", RunHelp},
    {"batch", "FILE|- [--keep-going]",
     "Run the command lines of a file, or of standard input, each with a JSON answer.", BatchTool},
    {"--plugins", "[OPTIONS]", "List the plug-ins that were found, and what is wrong with any.",
     PluginsTool},
    {"--reference", "man|markdown DIR",
     "Write a manual page per namespace, or commands.md, into a directory.", ReferenceTool},
    {"--completion", "bash|zsh|fish", "Write the script that teaches a shell to complete words.",
     CompletionTool},
    {"--complete", "WORD...", nullptr, CompleteTool},
};

}  // namespace

std::span<const Tool> Tools() { return kTools; }

}  // namespace autocli
