#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel cluster".
namespace OstrelCli::KorelNamespace {

/// Puts the host into a cluster that exists.
class ClusterJoin : public VirtualCommand<ClusterJoin> {
  friend VirtualCommand;
  ClusterJoin();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Takes the host out of one or all of its clusters.
class ClusterLeave : public VirtualCommand<ClusterLeave> {
  friend VirtualCommand;
  ClusterLeave();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the host's own cluster.
class ClusterGet : public VirtualCommand<ClusterGet> {
  friend VirtualCommand;
  ClusterGet();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The cluster.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Re-applies the persisted membership.
class ClusterRestore : public VirtualCommand<ClusterRestore> {
  /// Only New() has one.
  class Key {
    friend class ClusterRestore;
    explicit Key() = default;
  };

 public:
  /// With boot flags the command offers "boot" and "postboot", for the host's own start-up.
  static std::shared_ptr<ClusterRestore> New(bool withBootFlags);

  ClusterRestore(Key key, bool withBootFlags);

 private:
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  const bool withBootFlags_;
};

/// Creates a cluster with a random UUID and puts the host into it.
class ClusterNew : public VirtualCommand<ClusterNew> {
  friend VirtualCommand;
  ClusterNew();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Switches the Korel Max role of the host.
class KorelMaxSet : public PlainCommand<KorelMaxSet> {
  friend PlainCommand;
  KorelMaxSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows every cluster of the host.
class ClusterList : public PlainCommand<ClusterList> {
  friend PlainCommand;
  ClusterList();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One cluster.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Adds one unicast agent.
class ClusterUnicastAgentAdd : public VirtualCommand<ClusterUnicastAgentAdd> {
  friend VirtualCommand;
  ClusterUnicastAgentAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Removes one unicast agent.
class ClusterUnicastAgentRemove : public VirtualCommand<ClusterUnicastAgentRemove> {
  friend VirtualCommand;
  ClusterUnicastAgentRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Lists the unicast agents.
class ClusterUnicastAgentList : public VirtualCommand<ClusterUnicastAgentList> {
  friend VirtualCommand;
  ClusterUnicastAgentList();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One agent.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Removes all unicast agents.
class ClusterUnicastAgentClear : public VirtualCommand<ClusterUnicastAgentClear> {
  friend VirtualCommand;
  ClusterUnicastAgentClear();
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the preferred fault domain of one cluster.
class ClusterPreferredFaultDomainGet : public VirtualCommand<ClusterPreferredFaultDomainGet> {
  friend VirtualCommand;
  ClusterPreferredFaultDomainGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The fault domain.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Sets the preferred fault domain of a stretched cluster.
class ClusterPreferredFaultDomainSet : public VirtualCommand<ClusterPreferredFaultDomainSet> {
  friend VirtualCommand;
  ClusterPreferredFaultDomainSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the preferred fault domain of every cluster.
class ClusterPreferredFaultDomainList : public PlainCommand<ClusterPreferredFaultDomainList> {
  friend PlainCommand;
  ClusterPreferredFaultDomainList();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One fault domain.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

}  // namespace OstrelCli::KorelNamespace
