#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel maintenancemode".
namespace OstrelCli::KorelNamespace {

/// Cancels a maintenance-mode operation.
class MaintenanceModeCancel : public virtual Command {
 public:
  static std::shared_ptr<MaintenanceModeCancel> New() {
    return std::shared_ptr<MaintenanceModeCancel>(new MaintenanceModeCancel);
  }

 private:
  MaintenanceModeCancel();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

}  // namespace OstrelCli::KorelNamespace
