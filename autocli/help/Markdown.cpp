#include <fmt/format.h>

#include <algorithm>

#include "autocli/base/Escape.h"
#include "autocli/help/Help.h"
#include "autocli/help/Reference.h"

namespace autocli {

namespace {

bool Has(std::string_view set, char c) { return set.find(c) != std::string_view::npos; }

/// Text as it stands, `lineBreak` between its lines.
std::string Shown(std::string_view text, std::string_view lineBreak) {
  std::string out;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    bool isStart = true;
    for (const char c : Escaped(line)) {
      if (isStart && c == ' ') continue;
      // Some characters mean something anywhere, others at the start of a line.
      if (Has("\\`*_[]<>|&~#", c) || (isStart && Has("-+=.)", c))) out += '\\';
      out += c;
      isStart = isStart && Has("0123456789", c);
    }
    if (!text.empty()) out += lineBreak;
  }
  return out;
}

/// What is typed, in a table.
std::string Typed(const std::string& words) {
  std::string fence = "`";
  while (words.find(fence) != std::string::npos) fence += '`';
  const char* blank = fence.size() > 1 ? " " : "";
  std::string out = fence + blank;
  for (const char c : Escaped(words)) {
    if (c == '|') out += '\\';
    out += c;
  }
  return out + blank + fence;
}

std::string Rows(const std::vector<Meaning>& terms, const char* title) {
  if (terms.empty()) return "";
  std::string out = fmt::format("|{}| |\n|---|---|\n", title);
  for (const auto& [word, text] : terms) {
    out += fmt::format("| {} | {} |\n", Typed(word), Shown(text, "<br>"));
  }
  return out + "\n";
}

std::string BlockText(const Block& block) {
  std::string out = fmt::format("### {}\n\n", Shown(block.title, ""));
  if (!block.text.empty()) out += Shown(block.text, "\\\n") + "\n\n";
  out += Rows(block.terms, " ");
  if (!block.note.empty()) out += Shown(block.note, " ") + "\n\n";
  return out + Rows(block.examples, " For example ");
}

}  // namespace

Document MarkdownPage(const std::vector<Page>& pages) {
  std::string text = fmt::format("Made by `{} --reference markdown DIR`.\n\n", kProgram);
  for (const Page& page : pages) {
    text += fmt::format("## {}\n\n", page.path.empty() ? kProgram : Shown(page.path, ""));
    if (!page.description.empty()) text += Shown(page.description, "\\\n") + "\n\n";
    for (const Block& block : page.blocks) text += BlockText(block);
  }
  text.pop_back();
  return {"commands.md", "# Commands\n\n" + text};
}

}  // namespace autocli
