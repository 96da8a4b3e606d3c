#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel resync".
namespace OstrelCli::KorelNamespace {

/// Sets the resync throttle.
class ResyncThrottleSet : public VirtualCommand<ResyncThrottleSet> {
  friend VirtualCommand;
  ResyncThrottleSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the resync throttle.
class ResyncThrottleGet : public VirtualCommand<ResyncThrottleGet> {
  friend VirtualCommand;
  ResyncThrottleGet();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The throttle.
  virtual std::shared_ptr<MetaStruct> GetOutputStructure() const;
};

/// Shows the resync bandwidth.
class ResyncBandwidthGet : public PlainCommand<ResyncBandwidthGet> {
  friend PlainCommand;
  ResyncBandwidthGet();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The bandwidth.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

}  // namespace OstrelCli::KorelNamespace
