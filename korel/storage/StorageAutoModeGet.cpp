#include "korel/storage/Commands.h"

namespace OstrelCli::KorelNamespace {

StorageAutoModeGet::StorageAutoModeGet() {
  SetDescription(" Get status of storage auto claim mode.");
  SetDefaultOutputFormatter("simple");
}

std::shared_ptr<MetaStruct> StorageAutoModeGet::GetOutputStructure() {
  return Structure("AutoMode", {{"Enabled", MetaType::Bool}});
}

std::shared_ptr<OutputSpec> StorageAutoModeGet::GetOutputSpecInternal() {
  return Answers(GetOutputStructure());
}

void StorageAutoModeGet::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  const auto answer = GetOutputStructure();
  answer->SetField("Enabled", false);
  output->SetRootObject(answer);
}

}  // namespace OstrelCli::KorelNamespace
