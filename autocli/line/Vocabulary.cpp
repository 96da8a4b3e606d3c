#include "autocli/line/Vocabulary.h"

#include <algorithm>

namespace autocli {

const Tool* Vocabulary::FindTool(const std::string& word) const {
  if (root->HasNamespaceNode(word)) return nullptr;
  const auto tool = std::ranges::find(tools, word, &Tool::word);
  return tool == tools.end() ? nullptr : &*tool;
}

}  // namespace autocli
