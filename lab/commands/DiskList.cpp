#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Disks.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure("LabDisk", {{"Device", MetaType::String},
                               {"Is SSD", MetaType::Bool},
                               {"Size", MetaType::String},
                               {"Fit For", MetaType::String},
                               {"Tags", MetaType::List},
                               {"In Use", MetaType::Bool},
                               {"Data", MetaType::String},
                               {"Healthy", MetaType::Bool},
                               {"KOREL UUID", MetaType::String}});
}

std::string SizeText(std::int64_t sizeGb) {
  constexpr std::int64_t kGbPerTb = 1000;
  if (sizeGb > 0 && sizeGb % kGbPerTb == 0) return std::to_string(sizeGb / kGbPerTb) + " TB";
  return std::to_string(sizeGb) + " GB";
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
  record->SetField("Size", SizeText(device.sizeGb));
  record->SetField("Fit For", FitFor(device));
  record->SetField("Tags", tags);
  record->SetField("In Use", device.claim.has_value());
  record->SetField("Data", SizeText(device.claim ? device.claim->usedGb : 0));
  record->SetField("Healthy", device.isHealthy);
  record->SetField("KOREL UUID", device.uuid);
  return record;
}

class LabDiskList final : public LabCommand {
 public:
  LabDiskList() { Show(*this, *Shape(), "table"); }

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
