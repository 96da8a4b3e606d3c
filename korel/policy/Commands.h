#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel policy".
namespace OstrelCli::KorelNamespace {

/// Shows the default policies.
class PolicyGetDefault : public VirtualCommand<PolicyGetDefault> {
  friend VirtualCommand;
  PolicyGetDefault();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The default policy of one class.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Sets the default policy of one class.
class PolicySetDefault : public VirtualCommand<PolicySetDefault> {
  friend VirtualCommand;
  PolicySetDefault();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Resets all default policies, or that of one class.
class PolicyClearDefault : public VirtualCommand<PolicyClearDefault> {
  friend VirtualCommand;
  PolicyClearDefault();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

}  // namespace OstrelCli::KorelNamespace
