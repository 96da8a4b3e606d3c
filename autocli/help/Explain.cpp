#include "autocli/help/Explain.h"

#include <algorithm>

#include "autocli/base/Fault.h"
#include "autocli/contract/Shape.h"
#include "autocli/help/Placeholders.h"

namespace autocli {

using Corvex::AutoCli::CommandSpec;
using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::ParameterConstraintType;
using Corvex::CallSpec::ParameterSpec;
using Corvex::CallSpec::ParameterType;
using Corvex::MetaObj::MetaList;
using Corvex::MetaObj::MetaObject;
using Corvex::MetaObj::MetaType;

namespace {

const char* ValueName(ParameterType type, Naming naming) {
  if (naming == Naming::File) return "FILE";
  if (naming == Naming::Folder) return "FOLDER";
  switch (type) {
    case ParameterType::String:
    case ParameterType::StringList:
      return "STRING";
    case ParameterType::Int:
      return "INT";
    case ParameterType::Bool:
      return "BOOL";
    case ParameterType::Flag:
      break;
  }
  return "";
}

bool HasDescribedValues(const ParameterSpec& option) {
  return std::ranges::any_of(option.GetConstraint()->GetValues(),
                             [](const auto& value) { return !value.description.empty(); });
}

void AddLine(std::string& text, const std::string& line) {
  if (!text.empty() && !text.ends_with('\n')) text += '\n';
  text += line;
}

std::string TextOf(const ParameterSpec& option, bool isRepeatable) {
  std::string text = ExpandedDescription(option);
  if (option.IsRequired()) text.insert(0, text.empty() ? "(required)" : "(required) ");
  const std::string allowed = AllowedValues(option);
  const bool isSaid = option.GetDescription().find("ENUM%") != std::string::npos;
  if (!allowed.empty() && !isSaid) {
    const bool isRange = option.GetConstraint()->GetType() == ParameterConstraintType::IntRange;
    AddLine(text, isRange                      ? "range: " + allowed
                  : HasDescribedValues(option) ? "one of:\n" + DescribedValues(option)
                                               : "one of: " + allowed);
  }
  if (isRepeatable) AddLine(text, "may be given several times");
  return text;
}

std::string ResultText(const MetaObject& prototype) {
  if (prototype.GetType() == MetaType::Struct) return "record";
  if (prototype.GetType() != MetaType::List) return KindName(prototype.GetType());
  return static_cast<const MetaList&>(prototype).GetPrototype() ? "list of records"
                                                                : "list of strings";
}

}  // namespace

std::vector<OptionText> Explained(const InputSpec& input, const CommandNotes& notes) {
  std::vector<OptionText> options;
  std::vector<OptionText> last;
  for (const auto& option : input.GetParameters()) {
    const std::string& name = option->GetLongName();
    const std::string& letter = option->GetShortName();
    const bool isRepeatable = option->GetType() == ParameterType::StringList && name != notes.rest;
    const std::string text = TextOf(*option, isRepeatable);
    if (name == notes.rest) {
      last.push_back({"", RestText(name), "", option->IsRequired(), isRepeatable, text});
    } else {
      options.push_back({letter.empty() ? "" : "-" + letter, "--" + name,
                         ValueName(option->GetType(), notes.NamingOf(name)), option->IsRequired(),
                         isRepeatable, text});
    }
  }
  options.insert(options.end(), last.begin(), last.end());
  return options;
}

CommandText Explained(const CommandSpec& command, const Specs& specs, const std::string& path,
                      const CommandNotes& notes) {
  CommandText text = {path, command.GetDescription(), {}, "", {}, {}};
  if (!specs.problem.empty()) return text;
  text.options = Explained(*specs.input, notes);
  text.result = ResultText(*specs.output);
  text.fields = FieldNames(*specs.output);
  for (const auto& [line, about] : notes.examples) {
    text.examples.push_back({std::string(kProgram) + " " + line, about});
  }
  return text;
}

std::vector<std::string> UsagePieces(const std::vector<OptionText>& options) {
  std::vector<std::string> pieces;
  for (const OptionText& option : options) {
    const std::string text = option.name + (option.value.empty() ? "" : " " + option.value) +
                             (option.isRepeatable ? " ..." : "");
    pieces.push_back(option.isRequired ? text : "[" + text + "]");
  }
  return pieces;
}

std::vector<Meaning> ExitStatuses() {
  std::vector<Meaning> statuses = {{"0", "done"}};
  for (const FaultKind kind :
       {FaultKind::Command, FaultKind::Usage, FaultKind::Plugin, FaultKind::Internal}) {
    const FaultMeaning meaning = MeaningOf(kind);
    statuses.push_back({std::to_string(meaning.status), meaning.text});
  }
  return statuses;
}

}  // namespace autocli
