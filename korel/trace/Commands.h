#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel trace".
namespace OstrelCli::KorelNamespace {

/// Changes the trace daemon's settings.
class KorelTraceSet : public virtual Command {
 public:
  static std::shared_ptr<KorelTraceSet> New() {
    return std::shared_ptr<KorelTraceSet>(new KorelTraceSet);
  }

 private:
  KorelTraceSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the trace daemon's settings.
class KorelTraceGet : public virtual Command {
 public:
  static std::shared_ptr<KorelTraceGet> New() {
    return std::shared_ptr<KorelTraceGet>(new KorelTraceGet);
  }

 private:
  KorelTraceGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The settings.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

}  // namespace OstrelCli::KorelNamespace
