#include "autocli/line/Vocabulary.h"

#include <algorithm>

namespace autocli {

using Corvex::CallSpec::ParameterType;

const Tool* Vocabulary::FindTool(const std::string& word) const {
  if (root->HasNamespaceNode(word)) return nullptr;
  const auto tool = std::ranges::find(tools, word, &Tool::word);
  return tool == tools.end() ? nullptr : &*tool;
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
