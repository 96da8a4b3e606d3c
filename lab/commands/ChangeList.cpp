#include "lab/commands/ChangeList.h"

namespace lab {

std::shared_ptr<MetaList> NoChanges() {
  return ListOf(Structure("LabChange", {{"Change", MetaType::String},
                                        {"Of", MetaType::String},
                                        {"Field", MetaType::String},
                                        {"Before", MetaType::String},
                                        {"After", MetaType::String}}));
}

std::shared_ptr<MetaList> ListOfChanges(const std::vector<FieldChange>& changes) {
  const auto list = NoChanges();
  for (const auto& [kind, subject, field, before, after] : changes) {
    AddTexts(*list, {kind, subject, field, before, after});
  }
  return list;
}

void AddTexts(MetaList& list, const std::vector<std::optional<std::string>>& values) {
  auto record = MetaStruct::New(list.GetPrototype()->GetTypeName());
  for (std::size_t i = 0; i < values.size(); ++i) {
    record->SetField(list.GetPrototype()->GetFields()[i].name, MetaString::New(values[i]));
  }
  list.Add(record);
}

}  // namespace lab
