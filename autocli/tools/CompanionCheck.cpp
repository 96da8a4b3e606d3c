#include "autocli/tools/CompanionCheck.h"

#include <fmt/format.h>

#include <algorithm>

#include "autocli/contract/Shape.h"
#include "autocli/line/Line.h"
#include "autocli/tools/SplitLine.h"

namespace autocli {

using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::ParameterSpec;
using Corvex::CallSpec::ParameterType;

namespace {

const ParameterSpec* Find(const InputSpec& input, const std::string& name) {
  const auto& options = input.GetParameters();
  const auto option =
      std::ranges::find(options, name, [](const auto& each) { return each->GetLongName(); });
  return option == options.end() ? nullptr : option->get();
}

class Check {
 public:
  explicit Check(const Vocabulary& vocabulary) : vocabulary_(vocabulary) {}

  void CheckCompanion(const Companion& companion) {
    for (const std::string& problem : companion.problems) {
      problems_.push_back(companion.file + ": " + problem);
    }
    for (const auto& [path, notes] : companion.commands) {
      place_ = fmt::format("{}: \"{}\"", companion.file, path);
      if (IsElsewhere(path)) continue;
      const Line command = Read(path);
      if (IsCommand(command, path)) CheckCommand(*command.specs.input, path, notes);
    }
  }

  std::vector<std::string>& Problems() { return problems_; }

 private:
  void Report(const std::string& where, const std::string& problem) {
    problems_.push_back(place_ + where + ": " + problem);
  }

  Line Read(const std::string& text) const {
    std::string problem;
    Line line = ReadLine(vocabulary_, SplitLine(text, problem));
    if (!problem.empty()) line.faults.push_back({FaultKind::Usage, problem});
    return line;
  }

  bool IsElsewhere(const std::string& path) const {
    return !vocabulary_.root->HasNamespaceNode(path.substr(0, path.find(' ')));
  }

  /// Reports unless the line is the path of a command, and nothing else.
  bool IsCommand(const Line& line, const std::string& path, const std::string& where = "") {
    if (line.path != path || line.GetCommand() == nullptr) {
      Report(where, fmt::format("there is no command \"{}\"", path));
    } else if (!line.specs.problem.empty()) {
      Report(where, fmt::format("the command {}", line.specs.problem));
    } else {
      return true;
    }
    return false;
  }

  void CheckCommand(const InputSpec& input, const std::string& path, const CommandNotes& notes) {
    for (const auto& [name, option] : notes.options) {
      const std::string where = ", --" + name;
      const ParameterSpec* declared = Find(input, name);
      if (declared == nullptr) {
        Report(where, "the command has no such option");
        continue;
      }
      const bool isText = declared->GetType() == ParameterType::String ||
                          declared->GetType() == ParameterType::StringList;
      if (option.is != Naming::Anything && !isText)
        Report(where + ", is", "the option takes no text");
      if (option.is == Naming::Line && name != notes.rest) {
        Report(where + ", is", "only the rest of the line can be a line");
      }
      for (const ValueSource& source : option.values)
        CheckSource(where + ", values", input, source);
    }
    for (const auto& [line, text] : notes.examples) CheckExample(path, line);
    const ParameterSpec* rest = notes.rest.empty() ? nullptr : Find(input, notes.rest);
    if (!notes.rest.empty() && (rest == nullptr || rest->GetType() != ParameterType::StringList)) {
      Report(", rest", fmt::format("the command has no list option \"--{}\"", notes.rest));
    }
  }

  void CheckSource(const std::string& where, const InputSpec& input, const ValueSource& source) {
    for (const Conditions* conditions : {&source.when, &source.unless}) {
      for (const auto& [name, text] : *conditions) {
        const ParameterSpec* option = Find(input, name);
        const bool isOne = option != nullptr && (option->GetType() == ParameterType::String ||
                                                 option->GetType() == ParameterType::Flag);
        if (!isOne) Report(where, fmt::format("no flag or text option \"--{}\" to go by", name));
      }
    }
    if (source.command.empty()) return Report(where, "a source needs a command");
    if (IsElsewhere(source.command)) return;
    const Line line = Read(source.command);
    if (!IsCommand(line, source.command, where)) return;
    if (!line.faults.empty()) {
      return Report(where, fmt::format("\"{}\": {}", source.command, line.faults.front().message));
    }
    std::vector<std::string> names = {source.field};
    if (!source.about.empty()) names.push_back(source.about);
    for (const Conditions* conditions : {&source.where, &source.except}) {
      for (const auto& [name, text] : *conditions) names.push_back(name);
    }
    const auto known = FieldNames(*line.specs.output);
    for (const std::string& name : names) {
      if (std::ranges::count(known, name) > 0) continue;
      Report(where, fmt::format("\"{}\" has no field \"{}\"", source.command, name));
    }
  }

  void CheckExample(const std::string& path, const std::string& text) {
    const Line line = Read(text);
    for (const Fault& fault : line.faults) {
      Report(", examples", fmt::format("\"{}\": {}", text, fault.message));
    }
    if (line.faults.empty() && line.path != path) {
      Report(", examples", fmt::format("\"{}\" is another command's", text));
    }
  }

  const Vocabulary& vocabulary_;
  std::string place_;  ///< of what is looked at
  std::vector<std::string> problems_;
};

}  // namespace

std::vector<std::string> CompanionProblems(const Vocabulary& vocabulary) {
  Check check(vocabulary);
  for (const Companion& companion : vocabulary.companions.Read()) check.CheckCompanion(companion);
  return std::move(check.Problems());
}

}  // namespace autocli
