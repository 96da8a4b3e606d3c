#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Disks.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabDisk", {{"Device", MetaType::String},
                               {"Is SSD", MetaType::Bool},
                               {"Size", MetaType::Int},
                               {"Fit For", MetaType::String},
                               {"Tags", MetaType::List},
                               {"In Use", MetaType::Bool},
                               {"Data", MetaType::Int},
                               {"Healthy", MetaType::Bool},
                               {"Occupant", MetaType::String},
                               {"KOREL UUID", MetaType::String}});
}

const char* FitFor(const Device& device) {
  if (device.isKorelDirect) return "direct";
  return device.IsForCapacity() ? "capacity" : "cache";
}

std::shared_ptr<MetaStruct> Describe(const Device& device) {
  auto tags = MetaList::New(MetaType::String);
  for (const std::string& tag : TagsOf(device)) tags->Add(tag);
  auto record = Shape();
  record->SetField("Device", device.name);
  record->SetField("Is SSD", device.isFlash);
  record->SetField("Size", device.sizeGb);
  record->SetField("Fit For", FitFor(device));
  record->SetField("Tags", tags);
  record->SetField("In Use", device.claim.has_value());
  if (device.claim && !device.IsCachingOfGroup()) record->SetField("Data", device.claim->usedGb);
  record->SetField("Healthy", device.isHealthy);
  if (device.occupant == Occupant::Partitions) record->SetField("Occupant", "partitions");
  if (device.occupant == Occupant::OtherHost) record->SetField("Occupant", "other-host");
  record->SetField("KOREL UUID", device.uuid);
  return record;
}

class LabDiskList final : public LabCommand {
 public:
  LabDiskList() {
    Show(*this, *Shape(), "table");
    SetDefaultOutputParameter("units:LabDisk.Size", "GB");
    SetDefaultOutputParameter("units:LabDisk.Data", "GB");
  }

 private:
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Shape())); }

  void Run(const InputPtr&, const OutputPtr& output) override {
    auto list = ListOf(Shape());
    ReadLab([&](Store& store) {
      for (const Device& device : DevicesOf(store, CurrentHost(store))) {
        list->Add(Describe(device));
      }
    });
    output->SetRootObject(list);
  }
};

}  // namespace

CommandPtr NewDiskList() { return std::make_shared<LabDiskList>(); }

}  // namespace lab
