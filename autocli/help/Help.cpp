#include "autocli/help/Help.h"

#include <fmt/format.h>

#include <algorithm>

#include "autocli/base/Escape.h"
#include "autocli/line/GlobalOptions.h"

namespace autocli {

using Corvex::AutoCli::Namespace;
using Corvex::CallSpec::InputSpec;

namespace {

constexpr std::size_t kWidestLeft = 32;
constexpr std::size_t kGap = 2;

/// One line of two columns: a name with what is written after it, and what it is. The name may be
/// indented.
struct Entry {
  std::string name;
  std::string value;
  std::string text;
};

std::string Heading(std::string_view title, const Style& style) {
  return Painted(Ink::Heading, title, style.isColored);
}

std::string Section(const char* title, const std::vector<Entry>& entries, const Style& style) {
  if (entries.empty()) return "";
  std::size_t widest = 0;
  for (const Entry& entry : entries) {
    widest = std::max(widest, CellWidth(entry.name) + CellWidth(entry.value));
  }
  const std::size_t column = std::min({widest, kWidestLeft, style.width * 2 / 5}) + 2 * kGap;

  std::string out = "\n" + Heading(title, style) + "\n";
  for (const auto& [name, value, text] : entries) {
    const std::size_t indent = kGap + std::min(name.find_first_not_of(' '), name.size());
    out.append(indent, ' ');
    out += Painted(Ink::Name, std::string_view(name).substr(indent - kGap), style.isColored);
    out += value;
    if (!text.empty()) {
      const std::size_t used = kGap + CellWidth(name) + CellWidth(value);
      if (used + kGap > column) out += '\n';
      out.append(used + kGap > column ? column : column - used, ' ');
      out += Wrapped(text, column, style.width);
    }
    if (!out.ends_with('\n')) out += '\n';
  }
  return out;
}

/// Appends the pieces, escaped, a blank before each, from that column on; breaks no piece, and
/// indents what goes on a line of its own.
void AppendPieces(std::string& out, const std::vector<std::string>& pieces, std::size_t column,
                  std::size_t indent, std::size_t width) {
  for (const std::string& piece : pieces) {
    const std::string shown = Escaped(piece);
    const bool breaks = column >= indent && column + 1 + CellWidth(shown) > width;
    if (breaks) column = indent - 1;
    out += breaks ? "\n" + std::string(indent, ' ') : " ";
    out += shown;
    column += 1 + CellWidth(shown);
  }
}

/// How the line is typed, and what follows.
std::string Usage(const std::string& typed, const std::vector<std::string>& pieces,
                  const Style& style) {
  std::string out = Heading("usage:", style) + " " + typed;
  AppendPieces(out, pieces, std::string_view("usage: ").size() + typed.size(), 4, style.width);
  return out;
}

std::vector<std::string> NamespacePieces(const std::string& path) {
  if (path.empty()) return {"[global options]", "PATH...", "[options]"};
  return {"COMMAND...", "[options]"};
}

std::string Described(const std::string& description, const Style& style) {
  return description.empty() ? "" : Wrapped(description, 0, style.width) + "\n\n";
}

std::string Children(const Namespace& space, const Style& style) {
  std::vector<Entry> entries;
  for (const auto& child : space.GetChildren()) {
    entries.push_back({child->GetName(), "", child->GetDescription()});
  }
  return Section("commands:", entries, style);
}

std::string OptionSection(const char* title, const std::vector<OptionText>& options,
                          const Style& style) {
  std::vector<Entry> entries;
  for (const auto& [letter, name, value, isRequired, isRepeatable, text] : options) {
    entries.push_back({Escaped((letter.empty() ? "    " : letter + ", ") + name),
                       value.empty() ? "" : " " + value, text});
  }
  return Section(title, entries, style);
}

std::string ToolSection(std::span<const Tool> tools, const Style& style) {
  std::vector<Entry> entries;
  for (const Tool& tool : tools) {
    if (tool.description == nullptr) continue;
    const std::string word = tool.word;
    entries.push_back({word, ToolUsage(tool).substr(word.size()), tool.description});
  }
  return Section("tools:", entries, style);
}

/// What the command answers with.
std::string Result(const CommandText& command, const Style& style) {
  if (command.result.empty()) return "";
  std::string out = "\n" + Heading("result:", style) + " " + command.result;
  if (!command.fields.empty()) {
    out += " with the fields";
    std::vector<std::string> pieces;
    for (const std::string& field : command.fields) pieces.push_back(field + ",");
    pieces.back().pop_back();
    out += "\n ";
    AppendPieces(out, pieces, 1, 2, style.width);
  }
  return out + "\n";
}

std::string Listed(std::string_view title, const std::vector<std::string>& pieces,
                   const Style& style) {
  std::string out = "\n" + Heading(title, style);
  AppendPieces(out, pieces, title.size(), 2, style.width);
  return out + "\n";
}

/// What to type, on a line of its own so that it can be copied, and below it what that does.
std::string Examples(const std::vector<Meaning>& examples, const Style& style) {
  if (examples.empty()) return "";
  std::string out = "\n" + Heading("examples:", style) + "\n";
  for (const auto& [line, text] : examples) {
    out += "  " + Painted(Ink::Name, Escaped(line), style.isColored) + "\n";
    if (!text.empty()) out += "      " + Wrapped(text, 6, style.width) + "\n";
  }
  return out;
}

/// The exit statuses in a sentence.
std::string Statuses(const Style& style) {
  std::vector<std::string> pieces;
  for (const auto& [word, text] : ExitStatuses()) pieces.push_back(word + " " + text + ",");
  pieces.back().pop_back();
  return Listed("exit status:", pieces, style);
}

/// The options that every command takes.
std::string SharedOptions(const Style& style) {
  std::vector<std::string> names;
  for (const OptionText& option : Explained(GlobalOptions())) names.push_back(option.name);
  return Listed("everywhere:", names, style);
}

std::string More(const std::string& typed, const Style& style) {
  return fmt::format("\n{} {}\n", Heading("more:", style), typed);
}

}  // namespace

std::string RootHelp(const Vocabulary& vocabulary, const InputSpec& globalOptions,
                     const Style& style) {
  const Namespace& root = *vocabulary.root;
  std::vector<Entry> statuses;
  for (const auto& [word, text] : ExitStatuses()) statuses.push_back({word, "", text});
  return Described(root.GetDescription(), style) + Usage(kProgram, NamespacePieces(""), style) +
         "\n" + Children(root, style) + ToolSection(vocabulary.tools, style) +
         OptionSection("global options, also taken after the path:", Explained(globalOptions),
                       style) +
         Section("exit status, the highest that applies:", statuses, style) +
         More(vocabulary.Typed("PATH...", kHelpTool), style);
}

std::string NamespaceHelp(const Vocabulary& vocabulary, const Namespace& space,
                          const std::string& path, const Style& style) {
  return Described(space.GetDescription(), style) +
         Usage(vocabulary.Typed(path), NamespacePieces(path), style) + "\n" +
         Children(space, style) + More(vocabulary.Typed(path + " COMMAND...", kHelpTool), style);
}

std::string CommandHelp(const Vocabulary& vocabulary, const CommandText& command,
                        const Style& style) {
  return Described(command.description, style) +
         Usage(vocabulary.Typed(command.path), UsagePieces(command.options), style) + "\n" +
         OptionSection("options:", command.options, style) + Result(command, style) +
         Examples(command.examples, style) + Statuses(style) + SharedOptions(style);
}

std::string ToolHelp(const Vocabulary& vocabulary, const Tool& tool, const Style& style) {
  return Described(tool.description, style) + Usage(vocabulary.Typed(ToolUsage(tool)), {}, style) +
         "\n" + More(vocabulary.Typed("", kHelpTool), style);
}

std::string UsageLine(const Vocabulary& vocabulary, const std::string& path, const Specs& specs,
                      const CommandNotes& notes) {
  const auto pieces =
      specs.input ? UsagePieces(Explained(*specs.input, notes)) : NamespacePieces(path);
  return Usage(vocabulary.Typed(path), pieces, {.width = std::string::npos});
}

std::string ToolUsage(const Tool& tool) {
  const std::string word = tool.word;
  return *tool.arguments == '\0' ? word : word + " " + tool.arguments;
}

}  // namespace autocli
