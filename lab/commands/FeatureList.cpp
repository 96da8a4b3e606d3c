#include "lab/commands/Commands.h"
#include "lab/model/Features.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabFeature", {{"Name", MetaType::String}, {"Enabled", MetaType::Bool}});
}

}  // namespace

LabFeatureList::LabFeatureList() {
  SetDescription("List the feature switches.");
  Show(*this, *Shape(), "table");
}

std::shared_ptr<InputSpec> LabFeatureList::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> LabFeatureList::GetOutputSpecInternal() {
  return Answers(ListOf(Shape()));
}

void LabFeatureList::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
    auto list = ListOf(Shape());
    for (const Feature& feature : ReadLab(AllFeatures)) {
      auto record = Shape();
      record->SetField("Name", feature.name);
      record->SetField("Enabled", feature.isEnabled);
      list->Add(record);
    }
    output->SetRootObject(list);
  });
}

}  // namespace lab
