#include "autocli/line/Line.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "autocli/contract/Shape.h"
#include "autocli/line/GlobalOptions.h"
#include "autocli/line/OptionReader.h"
#include "autocli/line/Suggest.h"
#include "autocli/render/View.h"

namespace autocli {

using Corvex::AutoCli::CommandSpec;
using Corvex::AutoCli::Namespace;
using Corvex::AutoCli::NamespaceNode;
using Corvex::CallSpec::Input;

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

/// The word names a tool. False when it names none that people type.
bool TakeTool(const Vocabulary& vocabulary, Line& line, const std::string& word) {
  const Tool* tool = vocabulary.FindTool(word);
  if (tool == nullptr || tool->description == nullptr) return false;
  line.tool = tool;
  return true;
}

/// A word in place of a child's name: it asks for help, or is a tool that help is asked of. False
/// when it is neither.
bool FollowTool(const Vocabulary& vocabulary, Line& line, OptionReader& reader,
                const std::string& word) {
  if (word == kHelpTool && !line.globals->HasParameter("help")) {
    line.globals->SetParameter("help", true);
    return true;
  }
  if (!line.path.empty() || !TakeTool(vocabulary, line, word)) return false;
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
    line.isUnknown = true;
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
    line.faults.push_back({FaultKind::Internal, Blame(*command, line.specs.problem)});
    return reader.IgnoreUnknown();
  }
  reader.Declare(*line.specs.input, line.input);
}

/// The first one of a line is told with what there is.
std::string UnknownField(const std::vector<std::string>& known, const std::string& name,
                         bool isFirst) {
  if (known.empty()) return fmt::format("unknown field \"{}\", the result has no fields", name);
  const std::string hint = DidYouMean(name, known);
  if (!isFirst) return fmt::format("unknown field \"{}\"{}", name, hint);
  return fmt::format("unknown field \"{}\"{} fields are: {}", name,
                     hint.empty() ? ", the" : hint + " The", fmt::join(known, ", "));
}

/// Reads --fields against what the command declares to answer with.
void PickFields(Line& line, OptionReader& reader) {
  if (!line.globals->HasParameter("fields")) return;
  const std::vector<std::string> known = FieldNames(*line.specs.output);
  bool isFirst = true;
  for (const std::string& name : SplitNames(line.globals->GetParameter("fields"))) {
    if (std::ranges::count(known, name) == 0) {
      reader.Refuse(UnknownField(known, name, std::exchange(isFirst, false)));
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

  const bool isTool =
      !words.empty() && words.front() != kHelpTool && TakeTool(vocabulary, line, words.front());
  OptionReader reader({words.begin() + (isTool ? 1 : 0), words.end()});
  if (isTool) reader.IgnoreUnknown();
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
