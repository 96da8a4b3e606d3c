#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel policy".
namespace OstrelCli::KorelNamespace {

/// Shows the default policies.
class PolicyGetDefault : public virtual Command {
 public:
  static std::shared_ptr<PolicyGetDefault> New() {
    return std::shared_ptr<PolicyGetDefault>(new PolicyGetDefault);
  }

 private:
  PolicyGetDefault();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The default policy of one class.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Sets the default policy of one class.
class PolicySetDefault : public virtual Command {
 public:
  static std::shared_ptr<PolicySetDefault> New() {
    return std::shared_ptr<PolicySetDefault>(new PolicySetDefault);
  }

 private:
  PolicySetDefault();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Resets all default policies.
class PolicyClearDefault : public virtual Command {
 public:
  static std::shared_ptr<PolicyClearDefault> New() {
    return std::shared_ptr<PolicyClearDefault>(new PolicyClearDefault);
  }

 private:
  PolicyClearDefault();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

}  // namespace OstrelCli::KorelNamespace
