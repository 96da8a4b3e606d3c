#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel resync".
namespace OstrelCli::KorelNamespace {

/// Sets the resync throttle.
class ResyncThrottleSet : public virtual Command {
 public:
  static std::shared_ptr<ResyncThrottleSet> New() {
    return std::shared_ptr<ResyncThrottleSet>(new ResyncThrottleSet);
  }

 private:
  ResyncThrottleSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the resync throttle.
class ResyncThrottleGet : public virtual Command {
 public:
  static std::shared_ptr<ResyncThrottleGet> New() {
    return std::shared_ptr<ResyncThrottleGet>(new ResyncThrottleGet);
  }

 private:
  ResyncThrottleGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The throttle.
  virtual std::shared_ptr<MetaStruct> GetOutputStructure() const;
};

/// Shows the resync bandwidth.
class ResyncBandwidthGet : public Command {
 public:
  static std::shared_ptr<ResyncBandwidthGet> New() {
    return std::shared_ptr<ResyncBandwidthGet>(new ResyncBandwidthGet);
  }

 private:
  ResyncBandwidthGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The bandwidth.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

}  // namespace OstrelCli::KorelNamespace
