#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/InjectedFailures.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabFault", {{"Operation", MetaType::String},
                                {"Message", MetaType::String},
                                {"Calls Left", MetaType::Int}});
}

class LabFaultList final : public LabCommand {
 public:
  LabFaultList() { Show(*this, *Shape(), "simple", "%Operation%"); }

 private:
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Shape())); }

  void Run(const InputPtr&, const OutputPtr& output) override {
    auto list = ListOf(Shape());
    for (const InjectedFailure& failure : ReadLab(AllInjectedFailures)) {
      auto record = Shape();
      record->SetField("Operation", failure.operation);
      record->SetField("Message", failure.message);
      record->SetField("Calls Left", MetaInt::New(failure.remaining));
      list->Add(record);
    }
    output->SetRootObject(list);
  }
};

}  // namespace

CommandPtr NewFaultList() { return std::make_shared<LabFaultList>(); }

}  // namespace lab
