#include "autocli/help/Reference.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "autocli/help/Help.h"
#include "autocli/line/GlobalOptions.h"

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
  page.blocks.push_back(
      {command.path, true, command.description, Terms(command.options), note, command.examples});
}

/// What is said of the program as a whole.
void AddProgram(Page& page, std::span<const Tool> tools) {
  if (page.description.empty()) page.description = "Runs the commands that plug-ins bring.";
  std::vector<Meaning> terms;
  for (const Tool& tool : tools) {
    if (tool.description == nullptr) continue;
    terms.push_back({ToolUsage(tool), tool.description});
    page.synopsis.push_back({ToolUsage(tool)});
  }
  page.blocks.push_back({"Tools", false, "", terms, ""});
  page.blocks.push_back({"Global options", false, "They are also taken after the path.",
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
void AddPages(const Vocabulary& vocabulary, const Namespace& space, const std::string& path,
              std::vector<Page>& pages, std::vector<Fault>& faults) {
  Page page = {path, space.GetDescription(), {}, {}, {}};
  std::vector<Page> below;
  std::vector<Meaning> namespaces;
  for (const auto& child : space.GetChildren()) {
    const std::string childPath = path.empty() ? child->GetName() : path + " " + child->GetName();
    if (child->GetType() == NamespaceNode::NodeType::Namespace) {
      page.below.push_back(childPath);
      namespaces.push_back({childPath, child->GetDescription()});
      AddPages(vocabulary, static_cast<const Namespace&>(*child), childPath, below, faults);
      continue;
    }
    auto& command = static_cast<CommandSpec&>(*child);
    const Specs specs = SpecsOf(command);
    if (!specs.problem.empty()) {
      faults.push_back({FaultKind::Internal, Blame(command, specs.problem)});
    }
    AddCommand(page, Explained(command, specs, childPath, vocabulary.NotesOn(childPath, specs)));
  }
  if (!namespaces.empty() || page.synopsis.empty()) {
    page.synopsis.push_back({path, "COMMAND...", "[options]"});
  }
  if (!namespaces.empty()) {
    page.blocks.push_back({"Namespaces", false, "", namespaces, ""});
  }
  pages.push_back(std::move(page));
  std::ranges::move(below, std::back_inserter(pages));
}

}  // namespace

std::vector<Page> ReferencePages(const Vocabulary& vocabulary, std::vector<Fault>& faults) {
  std::vector<Page> pages;
  AddPages(vocabulary, *vocabulary.root, "", pages, faults);
  AddProgram(pages.front(), vocabulary.tools);
  return pages;
}

}  // namespace autocli
