#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure(
      "LabFile",
      {{"Path", MetaType::String}, {"Size", MetaType::Int}, {"Read Only", MetaType::Bool}});
}

class LabFileList final : public LabCommand {
 public:
  LabFileList() {
    Show(*this, *Shape(), "table");
    SetDefaultOutputParameter("units:LabFile.Size", "B");
  }

 private:
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override { return Answers(ListOf(Shape())); }

  void Run(const InputPtr&, const OutputPtr& output) override {
    auto list = ListOf(Shape());
    ReadLab([&](Store& store) {
      for (const HostFile& file : FilesOf(store, CurrentHost(store))) {
        auto record = Shape();
        record->SetField("Path", file.path);
        record->SetField("Size", static_cast<std::int64_t>(file.content.size()));
        record->SetField("Read Only", file.isReadOnly);
        list->Add(record);
      }
    });
    output->SetRootObject(list);
  }
};

}  // namespace

CommandPtr NewFileList() { return std::make_shared<LabFileList>(); }

}  // namespace lab
