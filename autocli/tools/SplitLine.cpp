#include "autocli/tools/SplitLine.h"

namespace autocli {
namespace {

constexpr std::string_view kBlanks = " \t";

class Splitter {
 public:
  explicit Splitter(std::string_view line) : rest_(line) {}

  bool SkipBlanks() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
    return !rest_.empty() && rest_.front() != '#';
  }

  std::string ReadWord(std::string& problem) {
    std::string word;
    while (!rest_.empty() && kBlanks.find(rest_.front()) == std::string_view::npos) {
      const char c = Next();
      if (c == '\'' || c == '"') {
        ReadQuoted(c, word, problem);
      } else if (c != '\\') {
        word += c;
      } else if (rest_.empty()) {
        problem = "a backslash ends the line";
      } else {
        word += Next();
      }
    }
    return word;
  }

 private:
  char Next() {
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }

  void ReadQuoted(char quote, std::string& word, std::string& problem) {
    while (!rest_.empty()) {
      char c = Next();
      if (c == quote) return;
      const bool escapes = quote == '"' && c == '\\' && !rest_.empty() &&
                           (rest_.front() == '"' || rest_.front() == '\\');
      if (escapes) c = Next();
      word += c;
    }
    problem = std::string("a ") + (quote == '"' ? "double" : "single") + " quote is not closed";
  }

  std::string_view rest_;
};

}  // namespace

std::vector<std::string> SplitLine(std::string_view line, std::string& problem) {
  if (line.find('\0') != std::string_view::npos) problem = "a line holds no zero bytes";
  std::vector<std::string> words;
  Splitter splitter(line);
  while (problem.empty() && splitter.SkipBlanks()) words.push_back(splitter.ReadWord(problem));
  return words;
}

}  // namespace autocli
