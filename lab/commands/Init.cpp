#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabInit final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "force",
          .shortName = "f",
          .type = ParameterType::Flag,
          .description =
              "Replace an existing lab, which 'lab undo' brings back. A file that is damaged, of a newer version or no lab at all is renamed first, to FILE.old or the next name that is free."},
         {.name = "inventory",
          .shortName = "i",
          .description =
              "JSON file with the hosts of the lab: {\"hosts\": [{\"name\": \"host1\", \"devices\": [{\"name\": \"disk1\", \"ssd\": true, \"capacityFlash\": false, \"sizeGb\": 800}], \"interfaces\": [\"hsk0\"]}]}. A host without devices or interfaces has the standard ones."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    std::vector<HostInventory> hosts{StandardHost("host1")};
    std::vector<std::string> faults;
    const std::string file = input->GetParameter("inventory");
    if (input->HasParameter("inventory")) hosts = ParseInventory(ReadInventoryFile(file), faults);
    for (const std::string& fault : faults) Refuse(output, file + ": " + fault);
    if (!faults.empty()) return;
    InitLab(hosts, input->IsFlagSet("force"));
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewInit() { return std::make_shared<LabInit>(); }

}  // namespace lab
