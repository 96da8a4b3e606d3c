#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel maintenancemode".
namespace OstrelCli::KorelNamespace {

/// Cancels a maintenance-mode operation.
class MaintenanceModeCancel : public VirtualCommand<MaintenanceModeCancel> {
  friend VirtualCommand;
  MaintenanceModeCancel();
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

}  // namespace OstrelCli::KorelNamespace
