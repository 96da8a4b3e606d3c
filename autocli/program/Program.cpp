#include "autocli/program/Program.h"

#include <cstring>

#include "autocli/base/Fault.h"
#include "autocli/help/Help.h"
#include "autocli/program/Tools.h"
#include "autocli/run/Driver.h"
#include "autocli/run/Report.h"
#include "autocli/tools/ToolCall.h"

namespace autocli {

using Corvex::AutoCli::Namespace;

namespace {

/// The words after the program's name.
std::vector<std::string> WordsOf(const std::vector<std::string>& arguments, const Namespace& root) {
  if (arguments.empty()) return {};
  std::vector<std::string> words(arguments.begin() + 1, arguments.end());
  const std::string& path = arguments.front();
  const std::string name = path.substr(path.rfind('/') + 1);
  if (name != kProgram && root.HasNamespaceNode(name)) words.insert(words.begin(), name);
  return words;
}

/// What asks about a tool that people type is no line of its own.
const Tool* ToolFor(const std::vector<std::string>& words, const Vocabulary& vocabulary) {
  if (words.empty()) return nullptr;
  const Tool* tool = vocabulary.FindTool(words.front());
  if (tool == nullptr || tool->description == nullptr) return tool;
  return words.size() == 2 && words.back() == "--help" ? nullptr : tool;
}

}  // namespace

int Run(const std::vector<std::string>& arguments, const std::shared_ptr<Namespace>& root,
        const std::vector<Plugin>& plugins, Sink& out, Sink& err) {
  const std::vector<std::string> words = WordsOf(arguments, *root);
  const Vocabulary vocabulary = {root, Tools(), Companions(plugins)};
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
