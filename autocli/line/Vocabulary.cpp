#include "autocli/line/Vocabulary.h"

#include <algorithm>

namespace autocli {

using Corvex::CallSpec::ParameterType;

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

CommandNotes Vocabulary::NotesOn(const std::string& path, const Specs& specs) const {
  if (!specs.input) return {};
  CommandNotes notes = companions.NotesOn(path);
  const bool isList = std::ranges::any_of(specs.input->GetParameters(), [&](const auto& option) {
    return option->GetLongName() == notes.rest && option->GetType() == ParameterType::StringList;
  });
  if (!isList) notes.rest.clear();
  return notes;
}

}  // namespace autocli
