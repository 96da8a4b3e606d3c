#include "autocli/driver/Call.h"

#include <fmt/format.h>

#include <algorithm>

#include "autocli/format/Formatter.h"
#include "autocli/parse/OptionReader.h"
#include "autocli/parse/Suggest.h"
#include "autocli/tree/Shape.h"

namespace autocli {

using Corvex::AutoCli::CommandSpec;
using Corvex::AutoCli::Namespace;
using Corvex::AutoCli::NamespaceNode;
using Corvex::CallSpec::Input;
using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::ParameterConstraint;
using Corvex::CallSpec::ParameterConstraintType;
using Corvex::CallSpec::ParameterSpec;
using Corvex::CallSpec::ParameterType;

namespace {

std::shared_ptr<ParameterSpec> Option(const char* name, ParameterType type,
                                      const char* description) {
  auto option = ParameterSpec::New(name, type);
  option->SetDescription(description);
  return option;
}

std::shared_ptr<ParameterSpec> Choice(const char* name, const std::vector<std::string>& values,
                                      const char* description) {
  auto constraint = ParameterConstraint::New(ParameterConstraintType::StringEnum);
  for (const std::string& value : values) constraint->AddStringEnum(value);
  auto option = Option(name, ParameterType::String, description);
  option->SetConstraint(constraint);
  return option;
}

std::shared_ptr<InputSpec> MakeGlobalOptions() {
  auto options = InputSpec::New();
  options->AddParameter(
      Choice("formatter", FormatterNames(),
             "How the result is written: %ENUM%. Without it, as the command itself suggests."));
  options->AddParameter(Option("fields", ParameterType::String,
                               "The fields to show, in this order, joined by commas."));
  options->AddParameter(Option("no-header", ParameterType::Flag,
                               "Leave the names of the columns out of table and csv."));
  options->AddParameter(
      Choice("color", {"auto", "always", "never"},
             "When help and errors are coloured: %ENUM%. Without it auto, on a terminal."));
  options->AddParameter(
      Option("help", ParameterType::Flag, "Say what can follow, or what a command does."));
  options->AddParameter(Option("describe", ParameterType::Flag,
                               "Write the commands below a path as one JSON document."));
  options->AddParameter(Option("version", ParameterType::Flag, "Say which version this is."));
  return options;
}

}  // namespace

const InputSpec& GlobalOptions() {
  static const std::shared_ptr<InputSpec> options = MakeGlobalOptions();
  return *options;
}

CommandSpec* Call::GetCommand() const {
  return node->GetType() == NamespaceNode::NodeType::Command ? static_cast<CommandSpec*>(node.get())
                                                             : nullptr;
}

bool Call::IsQuestion() const {
  return globals->HasParameter("help") || globals->HasParameter("describe") ||
         globals->HasParameter("version");
}

namespace {

/// A tool that people may name: it has a description.
const Tool* ToolNamed(const std::string& word) {
  const Tool* tool = FindTool(word);
  return tool == nullptr || tool->description == nullptr ? nullptr : tool;
}

std::string UnknownWord(const Namespace& space, const std::string& path, const std::string& word) {
  std::vector<std::string> names;
  for (const auto& child : space.GetChildren()) names.push_back(child->GetName());
  if (names.empty() && path.empty()) {
    return fmt::format("unknown command \"{}\", for no plug-in brought any command", word);
  }
  if (path.empty()) {
    for (const Tool& tool : Tools()) {
      if (ToolNamed(tool.word) != nullptr) names.emplace_back(tool.word);
    }
  }
  const std::string place = path.empty() ? "" : fmt::format(" in \"{}\"", path);
  return fmt::format("unknown command \"{}\"{}{}", word, place, DidYouMean(word, names));
}

/// A word in place of a child's name: it asks for help, or is a tool that help is asked of. False
/// when it is neither.
bool FollowTool(Call& call, OptionReader& reader, const std::string& word) {
  if (word == kHelpTool && !call.globals->HasParameter("help")) {
    call.globals->SetParameter("help", true);
    return true;
  }
  if (!call.path.empty()) return false;
  call.tool = ToolNamed(word);
  if (call.tool != nullptr) reader.IgnoreUnknown();
  return call.tool != nullptr;
}

/// Follows one word of the line.
void Follow(Call& call, OptionReader& reader, const std::string& word) {
  if (call.GetCommand() != nullptr) {
    return reader.Refuse(fmt::format("unexpected argument \"{}\"", word));
  }
  const auto& space = static_cast<const Namespace&>(*call.node);
  const auto child = space.GetNamespaceNode(word);
  if (!child && FollowTool(call, reader, word)) return;
  if (!child) {
    call.isPathSound = false;
    reader.Refuse(UnknownWord(space, call.path, word));
    return reader.IgnoreUnknown();
  }
  call.node = child;
  call.path += (call.path.empty() ? "" : " ") + word;
  CommandSpec* command = call.GetCommand();
  if (command == nullptr) return;
  call.specs = SpecsOf(*command);
  if (!call.specs.problem.empty()) {
    call.isPathSound = false;
    call.faults.push_back({FaultKind::Internal, "the command " + call.specs.problem});
    return reader.IgnoreUnknown();
  }
  reader.Declare(*call.specs.input, call.input);
  reader.GiveRestTo(call.specs.rest);
}

std::string UnknownField(const std::vector<std::string>& known, const std::string& name) {
  if (known.empty()) return fmt::format("unknown field \"{}\", the result has no fields", name);
  return fmt::format("unknown field \"{}\"{}", name, DidYouMean(name, known));
}

/// Reads --fields against what the command declares to answer with.
void PickFields(Call& call, OptionReader& reader) {
  if (!call.globals->HasParameter("fields")) return;
  const std::vector<std::string> known = FieldNames(*call.specs.output);
  for (const std::string& name : SplitNames(call.globals->GetParameter("fields"))) {
    if (std::ranges::count(known, name) == 0) {
      reader.Refuse(UnknownField(known, name));
    } else if (std::ranges::count(call.fields, name) > 0) {
      reader.Refuse(fmt::format("field \"{}\" is named twice in \"--fields\"", name));
    } else {
      call.fields.push_back(name);
    }
  }
}

}  // namespace

Call ReadCall(const std::shared_ptr<Namespace>& root, const std::vector<std::string>& words) {
  Call call;
  call.node = root;
  call.globals = Input::New();
  call.input = Input::New();

  OptionReader reader(words);
  reader.Declare(GlobalOptions(), call.globals);
  while (const auto word = reader.NextWord()) {
    if (call.isPathSound && call.tool == nullptr) Follow(call, reader, *word);
  }
  if (call.isPathSound && call.GetCommand() != nullptr && !call.IsQuestion()) {
    reader.RefuseMissing();
    PickFields(call, reader);
  }
  call.awaited = reader.GetAwaited();
  call.haveOptionsEnded = reader.HaveOptionsEnded();
  for (const std::string& fault : reader.GetFaults()) {
    call.faults.push_back({FaultKind::Usage, fault});
  }
  return call;
}

bool AsksForVersionFirst(const std::vector<std::string>& words) {
  const auto globals = Input::New();
  OptionReader reader(words);
  reader.Declare(GlobalOptions(), globals);
  reader.NextWord();
  return globals->HasParameter("version") && !globals->HasParameter("help") &&
         !globals->HasParameter("describe") && reader.GetFaults().empty();
}

}  // namespace autocli
