#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/InjectedFailures.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabFault", {{"Operation", MetaType::String},
                                {"Host", MetaType::String},
                                {"Message", MetaType::String},
                                {"Delay", MetaType::Int},
                                {"Calls Spared", MetaType::Int},
                                {"Calls Left", MetaType::Int}});
}

/// Unset when there is nothing to be said.
std::shared_ptr<MetaInt> Positive(std::int64_t number) {
  return number > 0 ? MetaInt::New(number) : MetaInt::New();
}

class LabFaultList final : public LabCommand {
 public:
  LabFaultList() {
    Show(*this, *Shape(), "simple", "%Operation%");
    SetDefaultOutputParameter("units:LabFault.Delay", "ms");
  }

 private:
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Shape())); }

  void Run(const InputPtr&, const OutputPtr& output) override {
    auto list = ListOf(Shape());
    for (const InjectedFailure& failure : ReadLab(AllInjectedFailures)) {
      auto record = Shape();
      record->SetField("Operation", failure.operation);
      record->SetField("Host",
                       failure.host.empty() ? MetaString::New() : MetaString::New(failure.host));
      record->SetField("Message", MetaString::New(failure.message));
      record->SetField("Delay", Positive(failure.delayMs));
      record->SetField("Calls Spared", Positive(failure.after - failure.calls));
      record->SetField("Calls Left", MetaInt::New(failure.CallsLeft()));
      list->Add(record);
    }
    output->SetRootObject(list);
  }
};

}  // namespace

CommandPtr NewFaultList() { return std::make_shared<LabFaultList>(); }

}  // namespace lab
