#include "autocli/line/Line.h"

#include <fmt/format.h>

#include <algorithm>

#include "autocli/contract/Shape.h"
#include "autocli/line/OptionReader.h"
#include "autocli/line/Suggest.h"
#include "autocli/render/Formatter.h"

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

CommandSpec* Line::GetCommand() const {
  return node->GetType() == NamespaceNode::NodeType::Command ? static_cast<CommandSpec*>(node.get())
                                                             : nullptr;
}

bool Line::IsQuestion() const {
  return globals->HasParameter("help") || globals->HasParameter("describe") ||
         globals->HasParameter("version");
}

namespace {

std::string UnknownWord(const Vocabulary& vocabulary, const Namespace& space,
                        const std::string& path, const std::string& word) {
  std::vector<std::string> names;
  for (const auto& child : space.GetChildren()) names.push_back(child->GetName());
  if (names.empty() && path.empty()) {
    return fmt::format("unknown command \"{}\", for no plug-in brought any command", word);
  }
  if (path.empty()) {
    for (const Tool& tool : vocabulary.tools) {
      if (tool.description != nullptr) names.emplace_back(tool.word);
    }
  }
  const std::string place = path.empty() ? "" : fmt::format(" in \"{}\"", path);
  return fmt::format("unknown command \"{}\"{}{}", word, place, DidYouMean(word, names));
}

/// A word in place of a child's name: it asks for help, or is a tool that help is asked of. False
/// when it is neither.
bool FollowTool(const Vocabulary& vocabulary, Line& line, OptionReader& reader,
                const std::string& word) {
  if (word == kHelpTool && !line.globals->HasParameter("help")) {
    line.globals->SetParameter("help", true);
    return true;
  }
  if (!line.path.empty()) return false;
  const Tool* tool = vocabulary.FindTool(word);
  // Only those that people type.
  if (tool == nullptr || tool->description == nullptr) return false;
  line.tool = tool;
  reader.IgnoreUnknown();
  return true;
}

/// Follows one word of the line.
void Follow(const Vocabulary& vocabulary, Line& line, OptionReader& reader,
            const std::string& word) {
  if (line.GetCommand() != nullptr) {
    const std::string rest = vocabulary.NotesOn(line.path, line.specs).rest;
    if (!rest.empty()) return reader.TakeRest(rest);
    return reader.Refuse(fmt::format("unexpected argument \"{}\"", word));
  }
  const auto& space = static_cast<const Namespace&>(*line.node);
  const auto child = space.GetNamespaceNode(word);
  if (!child && FollowTool(vocabulary, line, reader, word)) return;
  if (!child) {
    line.isPathSound = false;
    reader.Refuse(UnknownWord(vocabulary, space, line.path, word));
    return reader.IgnoreUnknown();
  }
  line.node = child;
  line.path += (line.path.empty() ? "" : " ") + word;
  CommandSpec* command = line.GetCommand();
  if (command == nullptr) return;
  line.specs = SpecsOf(*command);
  if (!line.specs.problem.empty()) {
    line.isPathSound = false;
    line.faults.push_back({FaultKind::Internal, "the command " + line.specs.problem});
    return reader.IgnoreUnknown();
  }
  reader.Declare(*line.specs.input, line.input);
}

std::string UnknownField(const std::vector<std::string>& known, const std::string& name) {
  if (known.empty()) return fmt::format("unknown field \"{}\", the result has no fields", name);
  return fmt::format("unknown field \"{}\"{}", name, DidYouMean(name, known));
}

/// Reads --fields against what the command declares to answer with.
void PickFields(Line& line, OptionReader& reader) {
  if (!line.globals->HasParameter("fields")) return;
  const std::vector<std::string> known = FieldNames(*line.specs.output);
  for (const std::string& name : SplitNames(line.globals->GetParameter("fields"))) {
    if (std::ranges::count(known, name) == 0) {
      reader.Refuse(UnknownField(known, name));
    } else if (std::ranges::count(line.fields, name) > 0) {
      reader.Refuse(fmt::format("field \"{}\" is named twice in \"--fields\"", name));
    } else {
      line.fields.push_back(name);
    }
  }
}

}  // namespace

Line ReadLine(const Vocabulary& vocabulary, const std::vector<std::string>& words) {
  Line line;
  line.node = vocabulary.root;
  line.globals = Input::New();
  line.input = Input::New();

  OptionReader reader(words);
  reader.Declare(GlobalOptions(), line.globals);
  while (const auto word = reader.NextWord()) {
    if (line.isPathSound && line.tool == nullptr) Follow(vocabulary, line, reader, *word);
  }
  if (line.isPathSound && line.GetCommand() != nullptr && !line.IsQuestion()) {
    if (reader.IsAnyMissing()) {
      reader.RefuseMissing(vocabulary.NotesOn(line.path, line.specs).rest);
    }
    PickFields(line, reader);
  }
  line.awaited = reader.GetAwaited();
  line.haveOptionsEnded = reader.HaveOptionsEnded();
  for (const std::string& fault : reader.GetFaults()) {
    line.faults.push_back({FaultKind::Usage, fault});
  }
  return line;
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
