#pragma once

#include <memory>
#include <string>
#include <vector>

#include "autocli/plugin/Loader.h"
#include "autocli/text/Sink.h"
#include "platform/autocli/AutoCli.h"

namespace autocli {

/// What one of the program's own tools works with.
struct ToolCall {
  std::vector<std::string> words;  ///< behind the tool's own word
  std::shared_ptr<Corvex::AutoCli::Namespace> root;
  const std::vector<Plugin>& plugins;
  Sink& out;
  Sink& err;
};

/// The tool that a line may name anywhere in its path.
inline constexpr const char* kHelpTool = "help";

/// What the program does itself, named by the first word of the line.
struct Tool {
  const char* word;
  const char* arguments;             ///< as a usage line shows them; may be empty
  const char* description;           ///< a line for help; null for a tool that nobody types
  int (*run)(const ToolCall& call);  ///< returns the exit status
};

/// All tools, in the order of help.
const std::vector<Tool>& Tools();

/// The tool that the word names; null without one.
const Tool* FindTool(const std::string& word);

/// Refuses the line of the tool named: the message, its usage line and where help is. Returns the
/// exit status.
int RefuseTool(const char* word, const std::string& message, Sink& err);

}  // namespace autocli
