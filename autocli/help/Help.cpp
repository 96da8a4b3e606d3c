#include "autocli/help/Help.h"

#include <fmt/format.h>

#include <algorithm>

#include "autocli/help/Placeholders.h"
#include "autocli/text/Escape.h"

namespace autocli {

using Corvex::AutoCli::CommandSpec;
using Corvex::AutoCli::Namespace;
using Corvex::CallSpec::InputSpec;
using Corvex::CallSpec::ParameterConstraintType;
using Corvex::CallSpec::ParameterSpec;
using Corvex::CallSpec::ParameterType;

namespace {

constexpr std::size_t kWidth = 100;
constexpr std::size_t kWidestLeft = 32;

/// One line of two columns: a name, and what it is.
struct Entry {
  std::string left;
  std::string right;
};

std::string Section(const char* title, const std::vector<Entry>& entries) {
  if (entries.empty()) return "";
  std::size_t widest = 0;
  for (const Entry& entry : entries) widest = std::max(widest, CellWidth(entry.left));
  const std::size_t column = std::min(widest, kWidestLeft) + 4;

  std::string out = fmt::format("\n{}:\n", title);
  for (const auto& [left, right] : entries) {
    out += "  " + left;
    const std::size_t used = CellWidth(left) + 2;
    if (!right.empty()) {
      if (used + 2 > column) out += '\n';
      out.append(used + 2 > column ? column : column - used, ' ');
      out += Wrapped(right, column, kWidth);
    }
    if (!out.ends_with('\n')) out += '\n';
  }
  return out;
}

const char* ValueName(ParameterType type) {
  switch (type) {
    case ParameterType::String:
    case ParameterType::StringList:
      return " STRING";
    case ParameterType::Int:
      return " INT";
    case ParameterType::Bool:
      return " BOOL";
    case ParameterType::Flag:
      break;
  }
  return "";
}

std::string OptionText(const ParameterSpec& option) {
  std::string text = option.IsRequired() ? "(required) " : "";
  text += ExpandedDescription(option);
  const std::string allowed = AllowedValues(option);
  const bool isSaid = option.GetDescription().find("ENUM%") != std::string::npos;
  if (!allowed.empty() && !isSaid) {
    if (!text.empty() && !text.ends_with('\n')) text += '\n';
    const bool isRange = option.GetConstraint()->GetType() == ParameterConstraintType::IntRange;
    text += (isRange ? "range: " : "one of: ") + allowed;
  }
  if (option.GetType() == ParameterType::StringList) {
    if (!text.empty() && !text.ends_with('\n')) text += '\n';
    text += "may be given several times";
  }
  return text;
}

std::vector<Entry> OptionEntries(const InputSpec& input) {
  std::vector<Entry> entries;
  for (const auto& option : input.GetParameters()) {
    const std::string& letter = option->GetShortName();
    const std::string left =
        Escaped(fmt::format("{}--{}{}", letter.empty() ? "    " : "-" + letter + ", ",
                            option->GetLongName(), ValueName(option->GetType())));
    entries.push_back({left, OptionText(*option)});
  }
  return entries;
}

/// The options of a usage line, each in one piece.
std::vector<std::string> UsagePieces(const InputSpec& input) {
  std::vector<std::string> pieces;
  for (const bool required : {true, false}) {
    for (const auto& option : input.GetParameters()) {
      if (option->IsRequired() != required) continue;
      const std::string text =
          Escaped("--" + option->GetLongName() + ValueName(option->GetType())) +
          (option->GetType() == ParameterType::StringList ? " ..." : "");
      pieces.push_back(required ? text : "[" + text + "]");
    }
  }
  return pieces;
}

std::string Joined(const char* first, const std::string& path) {
  return path.empty() ? first : fmt::format("{} {}", first, path);
}

std::string NamespaceUsage(const std::string& path) {
  if (path.empty()) return fmt::format("usage: {} [global options] PATH... [options]", kProgram);
  return fmt::format("usage: {} {} COMMAND... [options]", kProgram, path);
}

std::string CommandUsage(const std::string& path, const InputSpec& input, std::size_t width) {
  std::string out = "usage: " + Joined(kProgram, path);
  std::size_t column = out.size();
  for (const std::string& piece : UsagePieces(input)) {
    const bool breaks = column + 1 + CellWidth(piece) > width;
    out += breaks ? "\n    " : " ";
    column = (breaks ? 4 : column + 1) + CellWidth(piece);
    out += piece;
  }
  return out;
}

std::string Described(const std::string& description) {
  return description.empty() ? "" : Wrapped(description, 0, kWidth) + "\n\n";
}

std::string Children(const Namespace& space) {
  std::vector<Entry> entries;
  for (const auto& child : space.GetChildren()) {
    entries.push_back({child->GetName(), child->GetDescription()});
  }
  return Section("commands", entries);
}

}  // namespace

std::string RootHelp(const Namespace& root, const InputSpec& globalOptions) {
  return Described(root.GetDescription()) + NamespaceUsage("") + "\n" + Children(root) +
         Section("global options, also taken behind the path", OptionEntries(globalOptions)) +
         Section("exit status, the highest that applies",
                 {{"0", "done"},
                  {"1", "the command reported an error"},
                  {"2", "the command line was refused"},
                  {"3", "a plug-in could not be loaded"},
                  {"4",
                   "the command failed in a way that it does not account for, or its result "
                   "could not be written"}});
}

std::string NamespaceHelp(const Namespace& space, const std::string& path) {
  return Described(space.GetDescription()) + NamespaceUsage(path) + "\n" + Children(space);
}

std::string CommandHelp(const CommandSpec& command, const InputSpec& input,
                        const std::string& path) {
  return Described(command.GetDescription()) + CommandUsage(path, input, kWidth) + "\n" +
         Section("options", OptionEntries(input));
}

std::string UsageLine(const std::string& path, const InputSpec* input) {
  return input == nullptr ? NamespaceUsage(path) : CommandUsage(path, *input, std::string::npos);
}

}  // namespace autocli
