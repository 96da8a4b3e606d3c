#include "autocli/line/Vocabulary.h"

#include <algorithm>

namespace autocli {

const Tool* Vocabulary::FindTool(const std::string& word) const {
  if (root->HasNamespaceNode(word)) return nullptr;
  const auto tool = std::ranges::find(tools, word, &Tool::word);
  return tool == tools.end() ? nullptr : &*tool;
}

std::string Vocabulary::Typed(const std::string& path, const std::string& before) const {
  const bool isImplied = !implied.empty() && (path + " ").starts_with(implied + " ");
  std::string typed = isImplied ? implied : kProgram;
  const std::string rest =
      isImplied ? path.substr(std::min(path.size(), implied.size() + 1)) : path;
  for (const std::string& words : {before, rest}) typed += (words.empty() ? "" : " ") + words;
  return typed;
}

}  // namespace autocli
