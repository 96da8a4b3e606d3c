#include "autocli/program/Tools.h"

#include <algorithm>

#include "autocli/batch/Batch.h"
#include "autocli/driver/Fault.h"
#include "autocli/driver/Report.h"
#include "autocli/help/Help.h"
#include "autocli/plugin/PluginList.h"

namespace autocli {

const std::vector<Tool>& Tools() {
  static const std::vector<Tool> tools = {
      {"batch", "FILE|- [--keep-going]",
       "Run the command lines of a file, or of standard input, each with a JSON answer.",
       BatchTool},
      {"--plugins", "[global options]",
       "List the plug-ins that were found, and why any was refused.", PluginsTool},
  };
  return tools;
}

const Tool* FindTool(const std::string& word) {
  const auto tool = std::ranges::find(Tools(), word, &Tool::word);
  return tool == Tools().end() ? nullptr : &*tool;
}

int RefuseTool(const char* word, const std::string& message, Sink& err) {
  WriteFaults({{FaultKind::Usage, message}}, err);
  const Tool& tool = *FindTool(word);
  const std::string blank = *tool.arguments == '\0' ? "" : " ";
  err.Buffer() += std::string("usage: ") + kProgram + " " + tool.word + blank + tool.arguments +
                  "\ntry: " + kProgram + " --help\n";
  return MeaningOf(FaultKind::Usage).status;
}

}  // namespace autocli
