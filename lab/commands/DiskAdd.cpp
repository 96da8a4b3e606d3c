#include "lab/commands/Commands.h"
#include "lab/commands/LabCommand.h"
#include "lab/model/Hardware.h"
#include "lab/model/Lab.h"

namespace lab {
namespace {

constexpr const char* kSpinning = "spinning";
constexpr const char* kFlash = "flash";
constexpr const char* kCapacityFlash = "capacity-flash";

class LabDiskAdd final : public LabCommand {
 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override {
    return Inputs(
        {{.name = "name",
          .shortName = "n",
          .required = true,
          .description = "Name of the new device."},
         {.name = "size",
          .shortName = "s",
          .type = ParameterType::Int,
          .required = true,
          .constraint = IntRange(1, kMaxSizeGb),
          .description = "Its size in GB: %ENUM%."},
         {.name = "kind",
          .shortName = "k",
          .constraint = StringEnum({{kSpinning, ""}, {kFlash, ""}, {kCapacityFlash, ""}}),
          .description =
              "What it is, spinning when not given: %ENUM%. The last one is flash that carries the tag capacityFlash."},
         {.name = "vendor", .description = "Name of its vendor."},
         {.name = "model", .description = "Name of its model."}});
  }

  void Run(const InputPtr& input, const OutputPtr& output) override {
    const std::string kind = input->GetParameter("kind");
    DeviceInventory device{.name = input->GetParameter("name"),
                           .isFlash = kind == kFlash || kind == kCapacityFlash,
                           .isCapacityFlash = kind == kCapacityFlash,
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
