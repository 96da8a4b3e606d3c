#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel faultdomain".
namespace OstrelCli::KorelNamespace {

/// Shows the fault domain of the host.
class FaultDomainGet : public VirtualCommand<FaultDomainGet> {
  friend VirtualCommand;
  FaultDomainGet();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The fault domain.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Sets the fault domain of the host.
class FaultDomainSet : public VirtualCommand<FaultDomainSet> {
  friend VirtualCommand;
  FaultDomainSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Resets the fault domain of the host.
class FaultDomainReset : public VirtualCommand<FaultDomainReset> {
  friend VirtualCommand;
  FaultDomainReset();
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

}  // namespace OstrelCli::KorelNamespace
