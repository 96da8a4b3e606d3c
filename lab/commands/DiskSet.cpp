#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Disks.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabDiskSet final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "device",
          .shortName = "d",
          .required = true,
          .description = "Name of the device, in use or not."},
         {.name = "healthy",
          .type = ParameterType::Bool,
          .description = "Whether the device works as it should."},
         {.name = "format-version",
          .type = ParameterType::Int,
          .constraint = IntRange(1, kNewestFormatVersion),
          .description = "On-disk format of a device in use: %ENUM%."},
         {.name = "data",
          .type = ParameterType::Int,
          .constraint = IntRange(0, kMaxSizeGb),
          .description = "How many GB of data a capacity device in use holds, up to its size."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    const bool hasHealth = input->HasParameter("healthy");
    const bool hasFormat = input->HasParameter("format-version");
    const bool hasData = input->HasParameter("data");
    if (!hasHealth && !hasFormat && !hasData) {
      return Refuse(output, "Nothing to set, use --healthy, --format-version or --data.");
    }
    const std::string device = input->GetParameter("device");
    ChangeLab([&](Store& store) {
      const Host host = CurrentHost(store);
      if (hasHealth) SetHealth(store, host, device, input->GetParameterBool("healthy"));
      if (hasFormat) {
        SetFormatVersion(store, host, device,
                         static_cast<int>(input->GetParameterInt("format-version")));
      }
      if (hasData) SetData(store, host, device, input->GetParameterInt("data"));
    });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewDiskSet() { return std::make_shared<LabDiskSet>(); }

}  // namespace lab
