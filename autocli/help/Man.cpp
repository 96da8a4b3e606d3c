#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "autocli/base/Escape.h"
#include "autocli/help/Help.h"
#include "autocli/help/Reference.h"

namespace autocli {

namespace {

constexpr std::size_t kLineWidth = 72;

/// Takes the first piece off the text, and the character that ends it.
std::string_view Cut(std::string_view& text, char end) {
  const std::string_view piece = text.substr(0, text.find(end));
  text.remove_prefix(std::min(piece.size() + 1, text.size()));
  return piece;
}

std::string RoffEscaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    // A hyphen is a minus: what is copied from the page has to work.
    if (c == '\\' || c == '-') out += '\\';
    out += c == '\\' ? 'e' : c;
  }
  return out;
}

/// One argument of a macro, which would take short words for macros or punctuation.
std::string Argument(std::string_view word) {
  return (word.size() <= 3 || word.starts_with('"') ? "\\&" : "") + RoffEscaped(Escaped(word));
}

/// The words as arguments, on one line.
std::string Arguments(std::string_view words) {
  std::string out;
  while (!words.empty()) {
    const std::string_view word = Cut(words, ' ');
    if (!word.empty()) out += " " + Argument(word);
  }
  return out;
}

/// Options, values and all else as macros and arguments.
std::string Macros(std::string_view words) {
  std::string out;
  std::string last;
  while (!words.empty()) {
    std::string_view word = Cut(words, ' ');
    const bool isValue = std::ranges::none_of(word, [](char c) { return c >= 'a' && c <= 'z'; });
    const bool hasComma = word.size() > 1 && word.ends_with(',');
    if (hasComma) word.remove_suffix(1);
    const bool isOption = word.starts_with('-');
    if (isOption) word.remove_prefix(1);
    const std::string macro = isOption ? "Fl " : isValue ? "Ar " : "Cm ";
    if (!out.empty()) out += ' ';
    if (macro != last) out += macro;
    out += Argument(word) + (hasComma ? " ," : "");
    last = hasComma ? "" : macro;
  }
  return out;
}

/// Running text: each sentence begins a line of the source, and long ones are broken.
std::string Filled(std::string_view text) {
  std::string sentences(text);
  for (std::size_t at = 1; at + 1 < sentences.size(); ++at) {
    const char next = sentences[at + 1];
    const bool ends = std::string_view(".?!").find(sentences[at - 1]) != std::string_view::npos;
    if (sentences[at] == ' ' && ends && (next == ' ' || (next >= 'A' && next <= 'Z'))) {
      sentences[at] = '\n';
    }
  }
  const std::string wrapped = Wrapped(sentences, 0, kLineWidth);
  std::string out;
  for (std::string_view lines = wrapped; !lines.empty();) {
    std::string_view line = Cut(lines, '\n');
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    line = line.substr(0, line.find_last_not_of(' ') + 1);
    if (line.empty()) continue;
    const bool looksLikeMacro = line.starts_with('.') || line.starts_with('\'');
    out += (looksLikeMacro ? "\\&" : "") + RoffEscaped(line) + "\n";
  }
  return out;
}

/// Lines that are indented make a list; any other begins on a new line.
std::string Prose(std::string_view text) {
  std::string out;
  bool isList = false;
  while (!text.empty()) {
    const std::string_view line = Cut(text, '\n');
    const std::string filled = Filled(line);
    if (filled.empty()) continue;
    const bool wasList = std::exchange(isList, line.starts_with(' '));
    if (isList && !wasList) out += ".Bl -item -offset indent -compact\n";
    if (wasList && !isList) out += ".El\n";
    if (!wasList && !isList && !out.empty()) out += ".br\n";
    out += (isList ? ".It\n" : "") + filled;
  }
  return isList ? out + ".El\n" : out;
}

std::string UpperCase(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

std::string PageName(const std::string& path) {
  std::string name = path.empty() ? kProgram : fmt::format("{}-{}", kProgram, path);
  std::ranges::replace(name, ' ', '-');
  return name;
}

std::string Synopsis(const std::vector<std::string>& usage) {
  std::string out = fmt::format(".Nm {}\n", kProgram);
  for (const std::string& piece : usage) {
    if (piece.empty()) continue;
    out += piece.starts_with('[') ? ".Op " + Macros(piece.substr(1, piece.size() - 2)) + "\n"
                                  : "." + Macros(piece) + "\n";
  }
  return out;
}

std::string Tagged(const std::vector<Meaning>& terms) {
  if (terms.empty()) return "";
  std::string out = ".Bl -tag -width Ds\n";
  for (const auto& [word, text] : terms) out += ".It " + Macros(word) + "\n" + Prose(text);
  return out + ".El\n";
}

std::string BlockText(const Block& block) {
  std::string body = Prose(block.text) + Tagged(block.terms);
  if (!body.empty() && !block.note.empty()) body += ".Pp\n";
  const std::string head =
      block.isCommand ? ".Ss " + Macros(block.title) : ".Sh " + UpperCase(block.title);
  return head + "\n" + body + Filled(block.note);
}

/// Those of all its commands.
std::string Examples(const Page& page) {
  std::vector<Meaning> examples;
  for (const Block& block : page.blocks)
    std::ranges::copy(block.examples, std::back_inserter(examples));
  return examples.empty() ? "" : ".Sh EXAMPLES\n" + Tagged(examples);
}

std::string SeeAlso(const Page& page) {
  std::vector<std::string> paths = page.below;
  const std::size_t last = page.path.rfind(' ');
  if (last != std::string::npos) paths.insert(paths.begin(), page.path.substr(0, last));
  if (!page.path.empty()) paths.insert(paths.begin(), "");
  std::string out;
  for (const std::string& path : paths) {
    out +=
        (out.empty() ? ".Sh SEE ALSO\n" : " ,\n") + (".Sy " + Argument(PageName(path))) + " Ns (1)";
  }
  return out.empty() ? out : out + "\n";
}

}  // namespace

Document ManPage(const Page& page) {
  const std::string name = PageName(page.path);
  std::string about = Arguments(page.description.substr(0, page.description.find('\n')));
  while (about.ends_with('.')) about.pop_back();
  // A date would be no page's own; the word stands for the day on which it is read.
  std::string out = fmt::format(
      ".\\\" Made by {} --reference man.\n.Dd $Mdocdate$\n.Dt {} 1\n.Os\n.Sh NAME\n.Nm {}\n.Nd{}\n"
      ".Sh SYNOPSIS\n",
      kProgram, UpperCase(name), name, about.empty() ? " its commands" : about);
  for (const auto& usage : page.synopsis) out += Synopsis(usage);
  out += ".Sh DESCRIPTION\n" + Prose(page.description);
  for (const Block& block : page.blocks) out += BlockText(block);
  return {name + ".1", out + Examples(page) + SeeAlso(page)};
}

}  // namespace autocli
