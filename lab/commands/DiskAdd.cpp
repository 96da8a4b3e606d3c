#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Hardware.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

class LabDiskAdd final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs({{.name = "device",
                    .shortName = "d",
                    .required = true,
                    .description = "Name of the new device."},
                   {.name = "size",
                    .shortName = "s",
                    .type = ParameterType::Int,
                    .required = true,
                    .constraint = IntRange(1, kMaxSizeGb),
                    .description = "Its size in GB: %ENUM%."},
                   {.name = "ssd",
                    .type = ParameterType::Flag,
                    .description = "It is flash, and not a spinning disk."},
                   {.name = "capacity-flash",
                    .type = ParameterType::Flag,
                    .description = "It is flash that carries the tag capacityFlash."},
                   {.name = "vendor", .description = "Name of its vendor."},
                   {.name = "model", .description = "Name of its model."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    DeviceInventory device{.name = input->GetParameter("device"),
                           .isFlash = input->IsFlagSet("ssd"),
                           .isCapacityFlash = input->IsFlagSet("capacity-flash"),
                           .sizeGb = input->GetParameterInt("size")};
    if (input->HasParameter("vendor")) device.vendor = input->GetParameter("vendor");
    if (input->HasParameter("model")) device.model = input->GetParameter("model");
    ChangeLab([&](Store& store) { AddDevice(store, CurrentHost(store), device); });
    Succeed(output);
  }
};

}  // namespace

CommandPtr NewDiskAdd() { return std::make_shared<LabDiskAdd>(); }

}  // namespace lab
