#pragma once

#include "lab/commands/Common.h"

/// The commands of `autocli lab`. They act on the lab itself: nothing they do is logged as a host
/// control operation or made to fail on purpose.
namespace lab {

/// Makes the lab, or replaces it.
class LabInit final : public LabCommand<LabInit> {
 public:
  LabInit();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows what the lab holds.
class LabShow final : public LabCommand<LabShow> {
 public:
  LabShow();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Runs a command on a copy of the lab and shows what it would change.
class LabTry final : public LabCommand<LabTry> {
 public:
  LabTry();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows what changed the lab.
class LabHistory final : public LabCommand<LabHistory> {
 public:
  LabHistory();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Takes back what changed the lab.
class LabUndo final : public LabCommand<LabUndo> {
 public:
  LabUndo();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Writes the lab to another file.
class LabSave final : public LabCommand<LabSave> {
 public:
  LabSave();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Gives the lab the rows of another.
class LabLoad final : public LabCommand<LabLoad> {
 public:
  LabLoad();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows in what the lab differs from another.
class LabDiff final : public LabCommand<LabDiff> {
 public:
  LabDiff();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Says what is wrong with the lab.
class LabCheck final : public LabCommand<LabCheck> {
 public:
  LabCheck();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the files of the host.
class LabFileList final : public LabCommand<LabFileList> {
 public:
  LabFileList();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows a file of the host.
class LabFileGet final : public LabCommand<LabFileGet> {
 public:
  LabFileGet();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Gives the host a file.
class LabFilePut final : public LabCommand<LabFilePut> {
 public:
  LabFilePut();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Takes a file from the host.
class LabFileRemove final : public LabCommand<LabFileRemove> {
 public:
  LabFileRemove();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Changes what the trace daemon's init script answers.
class LabDaemonSet final : public LabCommand<LabDaemonSet> {
 public:
  LabDaemonSet();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the devices of the host.
class LabDiskList final : public LabCommand<LabDiskList> {
 public:
  LabDiskList();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Changes what a device of the host is like.
class LabDiskSet final : public LabCommand<LabDiskSet> {
 public:
  LabDiskSet();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Starts the trace daemon of the host.
class LabDaemonStart final : public LabCommand<LabDaemonStart> {
 public:
  LabDaemonStart();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Stops the trace daemon of the host.
class LabDaemonStop final : public LabCommand<LabDaemonStop> {
 public:
  LabDaemonStop();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Adds a host to the lab.
class LabHostAdd final : public LabCommand<LabHostAdd> {
 public:
  LabHostAdd();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the hosts of the lab.
class LabHostList final : public LabCommand<LabHostList> {
 public:
  LabHostList();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Changes a host's fault domain or node type.
class LabHostSet final : public LabCommand<LabHostSet> {
 public:
  LabHostSet();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Takes a host down and up.
class LabHostReboot final : public LabCommand<LabHostReboot> {
 public:
  LabHostReboot();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the clusters of the lab.
class LabClusterList final : public LabCommand<LabClusterList> {
 public:
  LabClusterList();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows one cluster.
class LabClusterShow final : public LabCommand<LabClusterShow> {
 public:
  LabClusterShow();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Begins a maintenance mode operation.
class LabMaintenanceStart final : public LabCommand<LabMaintenanceStart> {
 public:
  LabMaintenanceStart();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Sets the resync workload.
class LabResyncSet final : public LabCommand<LabResyncSet> {
 public:
  LabResyncSet();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Makes a host control operation fail on purpose.
class LabFaultAdd final : public LabCommand<LabFaultAdd> {
 public:
  LabFaultAdd();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows which operations are made to fail.
class LabFaultList final : public LabCommand<LabFaultList> {
 public:
  LabFaultList();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Lets all operations work again.
class LabFaultClear final : public LabCommand<LabFaultClear> {
 public:
  LabFaultClear();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the feature switches.
class LabFeatureList final : public LabCommand<LabFeatureList> {
 public:
  LabFeatureList();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Switches a feature on or off.
class LabFeatureSet final : public LabCommand<LabFeatureSet> {
 public:
  LabFeatureSet();

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

}  // namespace lab
