#include "lab/commands/Commands.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

std::shared_ptr<MetaStruct> Shape() {
  return Structure(
      "LabFile",
      {{"Path", MetaType::String}, {"Size", MetaType::Int}, {"Read Only", MetaType::Bool}});
}

}  // namespace

LabFileList::LabFileList() {
  SetDescription(
      "List the files of the host. They are kept in the lab and are not files of the machine.");
  Show(*this, *Shape(), "table");
  SetDefaultOutputParameter("units:LabFile.Size", "B");
  SetDefaultOutputParameter("completes:Path",
                            "lab file get --path,lab file put --path,"
                            "lab file remove --path");
}

std::shared_ptr<InputSpec> LabFileList::GetInputSpecInternal() { return Inputs(); }

std::shared_ptr<OutputSpec> LabFileList::GetOutputSpecInternal() {
  return Answers(ListOf(Shape()));
}

void LabFileList::ExecuteInternal(const InputPtr&, const OutputPtr& output) {
  Attempt(output, [&] {
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
  });
}

}  // namespace lab
