#include "lab/base/Text.h"
#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/memory/Copies.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabFileGet final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({HostFilePath(),
                   {.name = "to", .shortName = "t", .description = "The file to write."},
                   {.name = "force",
                    .type = ParameterType::Flag,
                    .description = "Replace an existing file."}});
  }

  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override {
    return Answers(MetaList::New(MetaType::String));
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    const std::string path = input->GetParameter("path");
    const std::string content = ReadLab([&](Store& store) {
      const Host host = CurrentHost(store);
      const auto file = FindFile(store, host, path);
      if (!file) FailNoFile(host, path);
      return file->content;
    });
    auto lines = MetaList::New(MetaType::String);
    if (input->HasParameter("to")) {
      WriteFile(input->GetParameter("to"), content, input->IsFlagSet("force"));
    } else {
      for (const std::string& line : Lines(content)) lines->Add(line);
    }
    output->SetRootObject(lines);
  }
};

}  // namespace

CommandPtr NewFileGet() { return std::make_shared<LabFileGet>(); }

}  // namespace lab
