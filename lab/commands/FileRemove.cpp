#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabFileRemove final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override { return Inputs({HostFilePath()}); }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    ChangeLab(
        [&](Store& store) { RemoveFile(store, CurrentHost(store), input->GetParameter("path")); });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewFileRemove() { return std::make_shared<LabFileRemove>(); }

}  // namespace lab
