#include "lab/base/Text.h"
#include "lab/commands/Commands.h"
#include "lab/memory/Copies.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"

namespace lab {

LabFileGet::LabFileGet() {
  SetDescription(
      "Show the lines of a file of the host, or write its bytes to a file of the machine.");
}

std::shared_ptr<InputSpec> LabFileGet::GetInputSpecInternal() {
  return Inputs(
      {{.name = "path",
        .shortName = "p",
        .required = true,
        .description = "Path of the file on the host: "
                       "\"/etc/ostrel/korel/koreltraced.conf\"."},
       {.name = "to", .shortName = "t", .description = "The file to write."},
       {.name = "force", .type = ParameterType::Flag, .description = "Replace an existing file."}});
}

std::shared_ptr<OutputSpec> LabFileGet::GetOutputSpecInternal() {
  return Answers(MetaList::New(MetaType::String));
}

void LabFileGet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  Attempt(output, [&] {
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
  });
}

}  // namespace lab
