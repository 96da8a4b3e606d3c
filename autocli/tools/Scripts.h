#pragma once

#include <string>
#include <vector>

#include "autocli/tools/ToolCall.h"

namespace autocli {

/// The shells that there are scripts for.
std::vector<std::string> ShellNames();

/// The script that teaches the shell to complete the words after each of these program names, by
/// asking `--complete`. Empty for another shell.
std::string CompletionScript(const std::string& shell, const std::vector<std::string>& programs);

/// The tool that writes such a script: `autocli --completion bash|zsh|fish`. The names are the
/// program's own, and those of its links that stand beside it and imply a top-level namespace.
int CompletionTool(const ToolCall& call);

}  // namespace autocli
