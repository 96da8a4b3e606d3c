#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Features.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabFeature", {{"Name", MetaType::String}, {"Enabled", MetaType::Bool}});
}

class LabFeatureList final : public LabCommand {
 public:
  LabFeatureList() { Show(*this, *Shape(), "table"); }

 private:
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Shape())); }

  void Run(const InputPtr&, const OutputPtr& output) override {
    auto list = ListOf(Shape());
    for (const FeatureSwitch& feature : ReadLab(AllFeatures)) {
      auto record = Shape();
      record->SetField("Name", feature.name);
      record->SetField("Enabled", feature.isEnabled);
      list->Add(record);
    }
    output->SetRootObject(list);
  }
};

}  // namespace

CommandPtr NewFeatureList() { return std::make_shared<LabFeatureList>(); }

}  // namespace lab
