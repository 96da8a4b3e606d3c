#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel faultdomain".
namespace OstrelCli::KorelNamespace {

/// Shows the fault domain of the host.
class FaultDomainGet : public virtual Command {
 public:
  static std::shared_ptr<FaultDomainGet> New() {
    return std::shared_ptr<FaultDomainGet>(new FaultDomainGet);
  }

 private:
  FaultDomainGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The fault domain.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Sets the fault domain of the host.
class FaultDomainSet : public virtual Command {
 public:
  static std::shared_ptr<FaultDomainSet> New() {
    return std::shared_ptr<FaultDomainSet>(new FaultDomainSet);
  }

 private:
  FaultDomainSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Resets the fault domain of the host.
class FaultDomainReset : public virtual Command {
 public:
  static std::shared_ptr<FaultDomainReset> New() {
    return std::shared_ptr<FaultDomainReset>(new FaultDomainReset);
  }

 private:
  FaultDomainReset();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

}  // namespace OstrelCli::KorelNamespace
