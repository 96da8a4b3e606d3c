#include "lab/commands/Commands.h"
#include "lab/model/Faults.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabFault", {{"Operation", MetaType::String},
                                {"Message", MetaType::String},
                                {"Calls Left", MetaType::Int}});
}

}  // namespace

LabFaultList::LabFaultList() {
  SetDescription(
      "List the operations that are made to fail. Without \"Calls Left\" all calls fail.");
  Show(*this, *Shape(), "simple", "%Operation%");
}

std::shared_ptr<InputSpec> LabFaultList::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> LabFaultList::GetOutputSpecInternal() {
  return Answers(ListOf(Shape()));
}

void LabFaultList::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
    auto list = ListOf(Shape());
    for (const Fault& fault : ReadLab(AllFaults)) {
      auto record = Shape();
      record->SetField("Operation", fault.operation);
      record->SetField("Message", fault.message);
      record->SetField("Calls Left", MetaInt::New(fault.remaining));
      list->Add(record);
    }
    output->SetRootObject(list);
  });
}

}  // namespace lab
