#include "lab/commands/Commands.h"
#include "lab/model/Disks.h"
#include "lab/model/Lab.h"

namespace lab {

LabDiskSet::LabDiskSet() {
  SetDescription(
      "Make a device of the host unhealthy or healthy, or its on-disk format an older one, to see "
      "what mounting and rebuilding make of it.");
}

std::shared_ptr<InputSpec> LabDiskSet::GetInputSpecInternal() {
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

std::shared_ptr<OutputSpec> LabDiskSet::GetOutputSpecInternal() { return Answers(MetaBool::New()); }

void LabDiskSet::ExecuteInternal(const InputPtr& input, const OutputPtr& output) {
  const bool hasHealth = input->HasParameter("healthy");
  const bool hasFormat = input->HasParameter("format-version");
  if (!hasHealth && !hasFormat) {
    return Refuse(output, "Nothing to set, use --healthy or --format-version.");
  }
  Attempt(output, [&] {
    const std::string device = input->GetParameter("device");
    ChangeLab([&](Store& store) {
      const Host host = CurrentHost(store);
      if (hasHealth) SetHealth(store, host, device, input->GetParameterBool("healthy"));
      if (!hasFormat) return;
      SetFormatVersion(store, host, device,
                       static_cast<int>(input->GetParameterInt("format-version")));
    });
    Succeed(output);
  });
}

}  // namespace lab
