#include "autocli/program/Tools.h"

#include <algorithm>

#include "autocli/batch/Batch.h"
#include "autocli/complete/Complete.h"
#include "autocli/complete/Scripts.h"
#include "autocli/driver/Driver.h"
#include "autocli/driver/Fault.h"
#include "autocli/driver/Report.h"
#include "autocli/help/Help.h"
#include "autocli/plugin/PluginList.h"
#include "autocli/reference/Reference.h"

namespace autocli {

namespace {

/// Asking for help belongs to the line of a command, and is read with it.
int RunHelp(const ToolCall& call) {
  std::vector<std::string> words = call.words;
  words.insert(words.begin(), kHelpTool);
  return RunLine(words, call.root, FaultsOf(call.plugins), call.out, call.err);
}

}  // namespace

const std::vector<Tool>& Tools() {
  static const std::vector<Tool> tools = {
      {kHelpTool, "[PATH...]", "Say what can follow a path, or what a command does.", RunHelp},
      {"batch", "FILE|- [--keep-going]",
       "Run the command lines of a file, or of standard input, each with a JSON answer.",
       BatchTool},
      {"--plugins", "[OPTIONS]", "List the plug-ins that were found, and why any was refused.",
       PluginsTool},
      {"--reference", "man|markdown DIR",
       "Write a manual page per namespace, or commands.md, into a directory.", RunReference},
      {"--completion", "bash|zsh|fish", "Write the script that teaches a shell to complete words.",
       CompletionTool},
      {"--complete", "WORD...", nullptr, CompleteTool},
  };
  return tools;
}

const Tool* FindTool(const std::string& word) {
  const auto tool = std::ranges::find(Tools(), word, &Tool::word);
  return tool == Tools().end() ? nullptr : &*tool;
}

int RefuseTool(const char* word, const std::string& message, Sink& err) {
  WriteFaults({{FaultKind::Usage, message}}, err);
  err.Buffer() += std::string("usage: ") + kProgram + " " + ToolUsage(*FindTool(word)) +
                  "\ntry: " + kProgram + " --help\n";
  return MeaningOf(FaultKind::Usage).status;
}

}  // namespace autocli
