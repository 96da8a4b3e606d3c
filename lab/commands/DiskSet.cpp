#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Disks.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabDiskSet final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({{.name = "device",
                    .shortName = "d",
                    .required = true,
                    .description = "Name of the device, in use or not."},
                   {.name = "healthy",
                    .type = ParameterType::Bool,
                    .description = "Whether the device works as it should."},
                   {.name = "format-version",
                    .type = ParameterType::Int,
                    .constraint = IntRange(1, kNewestFormatVersion),
                    .description = "On-disk format of a device in use: %ENUM%."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    const bool hasHealth = input->HasParameter("healthy");
    const bool hasFormat = input->HasParameter("format-version");
    if (!hasHealth && !hasFormat) {
      return Refuse(output, "Nothing to set, use --healthy or --format-version.");
    }
    const std::string device = input->GetParameter("device");
    ChangeLab([&](Store& store) {
      const Host host = CurrentHost(store);
      if (hasHealth) SetHealth(store, host, device, input->GetParameterBool("healthy"));
      if (!hasFormat) return;
      SetFormatVersion(store, host, device,
                       static_cast<int>(input->GetParameterInt("format-version")));
    });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewDiskSet() { return std::make_shared<LabDiskSet>(); }

}  // namespace lab
