#include "autocli/program/Program.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "autocli/base/Fault.h"
#include "autocli/help/Help.h"
#include "autocli/program/Tools.h"
#include "autocli/run/Driver.h"
#include "autocli/run/Report.h"
#include "autocli/tools/ToolCall.h"

namespace autocli {

using Corvex::AutoCli::Namespace;

namespace {

/// The word that a link of that path implies; empty for none.
std::string ImpliedBy(const std::string& path, const Namespace& root) {
  const std::string name = path.substr(path.rfind('/') + 1);
  return name != kProgram && root.HasNamespaceNode(name) ? name : "";
}

bool AsksForHelp(const std::vector<std::string>& words) {
  const auto end = std::ranges::find(words, "--");
  return std::any_of(words.begin(), end,
                     [](const std::string& word) { return word == "--help" || word == "-h"; });
}

/// What asks about a tool that people type is no line of its own.
const Tool* ToolFor(const std::vector<std::string>& words, const Vocabulary& vocabulary) {
  if (words.empty()) return nullptr;
  const Tool* tool = vocabulary.FindTool(words.front());
  if (tool == nullptr || tool->description == nullptr) return tool;
  return tool->word != std::string_view(kHelpTool) && AsksForHelp(words) ? nullptr : tool;
}

}  // namespace

int Run(const std::vector<std::string>& arguments, const std::shared_ptr<Namespace>& root,
        const std::vector<Plugin>& plugins, Sink& out, Sink& err) {
  const std::string implied = arguments.empty() ? "" : ImpliedBy(arguments.front(), *root);
  std::vector<std::string> words = arguments;
  if (!words.empty()) words.erase(words.begin());
  if (!implied.empty()) words.insert(words.begin(), implied);
  const Vocabulary vocabulary = {root, Tools(), implied, Companions(plugins)};
  const Tool* tool = ToolFor(words, vocabulary);
  int status =
      tool == nullptr
          ? RunLine(words, vocabulary, FaultsOf(plugins), out, err)
          : tool->run({*tool, {words.begin() + 1, words.end()}, vocabulary, plugins, out, err});
  if (!out.Flush()) {
    const Fault fault{FaultKind::Internal, std::string("the output could not be written: ") +
                                               std::strerror(out.GetError())};
    status = WriteFaults({fault}, err);
  }
  err.Flush();
  return status;
}

}  // namespace autocli
