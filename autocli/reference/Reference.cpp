#include "autocli/reference/Reference.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "autocli/driver/Call.h"
#include "autocli/driver/Report.h"
#include "autocli/help/Help.h"

namespace autocli {

using Corvex::AutoCli::CommandSpec;
using Corvex::AutoCli::Namespace;
using Corvex::AutoCli::NamespaceNode;

namespace {

std::vector<Meaning> Terms(const std::vector<OptionText>& options) {
  std::vector<Meaning> terms;
  for (const OptionText& option : options) {
    const std::string letter = option.letter.empty() ? "" : option.letter + ", ";
    const std::string value = option.value.empty() ? "" : " " + option.value;
    terms.push_back({letter + option.name + value, option.text});
  }
  return terms;
}

void AddCommand(Page& page, const CommandText& command) {
  std::vector<std::string> usage = UsagePieces(command.options);
  usage.insert(usage.begin(), command.path);
  page.synopsis.push_back(usage);
  std::string note = command.result.empty() ? "" : "Result: " + command.result;
  const char* separator = " with the fields ";
  for (const std::string& field : command.fields) {
    note += separator + field;
    separator = ", ";
  }
  page.blocks.push_back({command.path, true, command.description, Terms(command.options), note});
}

/// What is said of the program as a whole.
void AddProgram(Page& page) {
  if (page.description.empty()) page.description = "Runs the commands that plug-ins bring.";
  std::vector<Meaning> tools;
  for (const Tool& tool : Tools()) {
    if (tool.description == nullptr) continue;
    tools.push_back({ToolUsage(tool), tool.description});
    page.synopsis.push_back({ToolUsage(tool)});
  }
  page.blocks.push_back({"Tools", false, "", tools, ""});
  page.blocks.push_back({"Global options", false, "They are also taken behind the path.",
                         Terms(Explained(GlobalOptions())), ""});
  page.blocks.push_back(
      {"Environment",
       false,
       "",
       {{"NO_COLOR", "When set and not empty, nothing is coloured unless --color says so."},
        {"TERM", "When \"dumb\" or missing, the same."},
        {"COLUMNS", "Width of help where no terminal tells it; 80 without it."}},
       ""});
  page.blocks.push_back({"Exit status", false, "The highest that applies.", ExitStatuses(), ""});
}

/// Adds the page of the namespace, and those of the namespaces below it.
void AddPages(const Namespace& space, const std::string& path, std::vector<Page>& pages,
              std::vector<Fault>& faults) {
  Page page = {path, space.GetDescription(), {}, {}, {}};
  std::vector<Page> below;
  std::vector<Meaning> namespaces;
  for (const auto& child : space.GetChildren()) {
    const std::string childPath = path.empty() ? child->GetName() : path + " " + child->GetName();
    if (child->GetType() == NamespaceNode::NodeType::Namespace) {
      page.below.push_back(childPath);
      namespaces.push_back({childPath, child->GetDescription()});
      AddPages(static_cast<const Namespace&>(*child), childPath, below, faults);
      continue;
    }
    auto& command = static_cast<CommandSpec&>(*child);
    const Specs specs = SpecsOf(command);
    if (!specs.problem.empty()) {
      faults.push_back(
          {FaultKind::Internal, fmt::format("command \"{}\": {}", childPath, specs.problem)});
    }
    AddCommand(page, Explained(command, specs, childPath));
  }
  if (!namespaces.empty() || page.synopsis.empty()) {
    page.synopsis.push_back({path, "COMMAND...", "[options]"});
  }
  if (!namespaces.empty()) {
    page.blocks.push_back({"Namespaces", false, "", namespaces, ""});
  }
  if (path.empty()) AddProgram(page);
  pages.push_back(std::move(page));
  std::ranges::move(below, std::back_inserter(pages));
}

std::vector<Document> DocumentsOf(const std::vector<Page>& pages, const std::string& kind) {
  if (kind != "man") return {MarkdownPage(pages)};
  std::vector<Document> documents;
  for (const Page& page : pages) documents.push_back(ManPage(page));
  return documents;
}

/// Writes all of it. Returns 0, or the errno value of what stopped it.
int WriteText(const std::string& path, const std::string& text) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0666);
  if (file < 0) return errno;
  FileSink sink(file);
  sink.Buffer() = text;
  sink.Flush();
  const bool isClosed = close(file) == 0;
  return sink.GetError() != 0 || isClosed ? sink.GetError() : errno;
}

/// Puts the document in place of an earlier one, as a whole or not at all. Returns the same.
int Replace(const std::string& path, const std::string& text) {
  const std::string beside = path + ".new";
  int error = WriteText(beside, text);
  if (error == 0 && std::rename(beside.c_str(), path.c_str()) != 0) error = errno;
  if (error != 0) unlink(beside.c_str());
  return error;
}

}  // namespace

int RunReference(const ToolCall& call) {
  constexpr const char* kWord = "--reference";
  if (call.words.size() != 2 || call.words[1].empty()) {
    return RefuseTool(kWord, "the kind of page and a directory are needed", call.err);
  }
  const std::string& kind = call.words[0];
  const std::string& directory = call.words[1];
  if (kind != "man" && kind != "markdown") {
    return RefuseTool(kWord, fmt::format("\"{}\" is none of man, markdown", kind), call.err);
  }
  if (access((directory + "/.").c_str(), W_OK | X_OK) != 0) {
    return RefuseTool(kWord,
                      fmt::format("cannot write into \"{}\": {}", directory, std::strerror(errno)),
                      call.err);
  }
  std::vector<Fault> faults;
  for (const std::string& fault : FaultsOf(call.plugins))
    faults.push_back({FaultKind::Plugin, fault});
  std::vector<Page> pages;
  AddPages(*call.root, "", pages, faults);
  for (const auto& [file, text] : DocumentsOf(pages, kind)) {
    const std::string path = directory + "/" + file;
    const int error = Replace(path, text);
    if (error == 0) continue;
    faults.push_back(
        {FaultKind::Command, fmt::format("cannot write \"{}\": {}", path, std::strerror(error))});
    break;
  }
  WriteFaults(faults, call.err);
  return StatusOf(faults);
}

}  // namespace autocli
