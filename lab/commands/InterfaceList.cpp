#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Lab.h"
#include "lab/model/NetworkConfig.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabInterface", {{"Name", MetaType::String},
                                    {"In Use", MetaType::Bool},
                                    {"Persisted", MetaType::Bool},
                                    {"Traffic Types", MetaType::List}});
}

std::shared_ptr<MetaStruct> Describe(const Interface& interface) {
  auto types = MetaList::New(MetaType::String);
  for (const std::string& type : interface.trafficTypes) types->Add(type);
  auto record = Shape();
  record->SetField("Name", interface.name);
  record->SetField("In Use", interface.isActive);
  record->SetField("Persisted", interface.isPersisted);
  record->SetField("Traffic Types", types);
  return record;
}

class LabInterfaceList final : public LabCommand {
 public:
  LabInterfaceList() { Show(*this, *Shape(), "table"); }

 private:
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Shape())); }

  void Run(const InputPtr&, const OutputPtr& output) override {
    auto list = ListOf(Shape());
    ReadLab([&](Store& store) {
      for (const Interface& interface : InterfacesOf(store, CurrentHost(store))) {
        list->Add(Describe(interface));
      }
    });
    output->SetRootObject(list);
  }
};

}  // namespace

CommandPtr NewInterfaceList() { return std::make_shared<LabInterfaceList>(); }

}  // namespace lab
