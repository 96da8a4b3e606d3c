#pragma once

#include <string>
#include <vector>

#include "autocli/base/Sink.h"
#include "autocli/line/Vocabulary.h"
#include "autocli/plugin/Loader.h"

namespace autocli {

/// What a tool works with.
struct ToolCall {
  const Tool& tool;                ///< itself
  std::vector<std::string> words;  ///< after the tool's own word
  const Vocabulary& vocabulary;
  const std::vector<Plugin>& plugins;
  Sink& out;
  Sink& err;
};

/// Refuses the line: the message, the tool's usage line and where help is. Returns the exit status.
int RefuseTool(const ToolCall& call, const std::string& message);

}  // namespace autocli
