#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel trace".
namespace OstrelCli::KorelNamespace {

/// Changes the trace daemon's settings.
class KorelTraceSet : public VirtualCommand<KorelTraceSet> {
  friend VirtualCommand;
  KorelTraceSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the trace daemon's settings.
class KorelTraceGet : public VirtualCommand<KorelTraceGet> {
  friend VirtualCommand;
  KorelTraceGet();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The settings.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

}  // namespace OstrelCli::KorelNamespace
