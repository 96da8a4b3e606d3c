#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/memory/Copies.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabFilePut final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({HostFilePath(),
                   {.name = "from",
                    .shortName = "f",
                    .required = true,
                    .description = "File of the machine that holds the content."},
                   {.name = "read-only",
                    .shortName = "r",
                    .type = ParameterType::Flag,
                    .description = "Commands of the host cannot write the file."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    const std::string content = ReadSmallFile(input->GetParameter("from"));
    ChangeLab([&](Store& store) {
      PutFile(store, CurrentHost(store),
              {input->GetParameter("path"), content, input->IsFlagSet("read-only")});
    });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewFilePut() { return std::make_shared<LabFilePut>(); }

}  // namespace lab
