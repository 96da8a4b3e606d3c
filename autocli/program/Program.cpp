#include "autocli/program/Program.h"

#include <cstring>

#include "autocli/driver/Driver.h"
#include "autocli/driver/Fault.h"
#include "autocli/driver/Report.h"
#include "autocli/help/Help.h"
#include "autocli/program/Tools.h"

namespace autocli {

using Corvex::AutoCli::Namespace;

namespace {

/// The words behind the program's name.
std::vector<std::string> WordsOf(const std::vector<std::string>& arguments, const Namespace& root) {
  if (arguments.empty()) return {};
  std::vector<std::string> words(arguments.begin() + 1, arguments.end());
  const std::string& path = arguments.front();
  const std::string name = path.substr(path.rfind('/') + 1);
  if (name != kProgram && root.HasNamespaceNode(name)) words.insert(words.begin(), name);
  return words;
}

/// A top-level namespace of a plug-in hides a tool of the same name. What asks
/// about a tool that people type is no line of its own.
const Tool* ToolFor(const std::vector<std::string>& words, const Namespace& root) {
  if (words.empty() || root.HasNamespaceNode(words.front())) return nullptr;
  const Tool* tool = FindTool(words.front());
  if (tool == nullptr || tool->description == nullptr) return tool;
  return words.size() == 2 && words.back() == "--help" ? nullptr : tool;
}

}  // namespace

int Run(const std::vector<std::string>& arguments, const std::shared_ptr<Namespace>& root,
        const std::vector<Plugin>& plugins, Sink& out, Sink& err) {
  const std::vector<std::string> words = WordsOf(arguments, *root);
  const Tool* tool = ToolFor(words, *root);
  int status = tool == nullptr
                   ? RunLine(words, root, FaultsOf(plugins), out, err)
                   : tool->run({{words.begin() + 1, words.end()}, root, plugins, out, err});
  if (!out.Flush()) {
    const Fault fault{FaultKind::Internal, std::string("the output could not be written: ") +
                                               std::strerror(out.GetError())};
    WriteFaults({fault}, err);
    status = MeaningOf(fault.kind).status;
  }
  err.Flush();
  return status;
}

}  // namespace autocli
