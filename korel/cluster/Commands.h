#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel cluster".
namespace OstrelCli::KorelNamespace {

/// Puts the host into a cluster that exists.
class ClusterJoin : public virtual Command {
 public:
  static std::shared_ptr<ClusterJoin> New() {
    return std::shared_ptr<ClusterJoin>(new ClusterJoin);
  }

 private:
  ClusterJoin();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Takes the host out of one or all of its clusters.
class ClusterLeave : public virtual Command {
 public:
  static std::shared_ptr<ClusterLeave> New() {
    return std::shared_ptr<ClusterLeave>(new ClusterLeave);
  }

 private:
  ClusterLeave();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the host's own cluster.
class ClusterGet : public virtual Command {
 public:
  static std::shared_ptr<ClusterGet> New() { return std::shared_ptr<ClusterGet>(new ClusterGet); }

 private:
  ClusterGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The cluster.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Re-applies the persisted membership.
class ClusterRestore : public virtual Command {
 public:
  /// With boot flags the command offers "boot" and "postboot", for the host's own start-up.
  static std::shared_ptr<ClusterRestore> New(bool withBootFlags);

 private:
  explicit ClusterRestore(bool withBootFlags);
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  const bool withBootFlags_;
};

/// Creates a cluster with a random UUID and puts the host into it.
class ClusterNew : public virtual Command {
 public:
  static std::shared_ptr<ClusterNew> New() { return std::shared_ptr<ClusterNew>(new ClusterNew); }

 private:
  ClusterNew();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Switches the Korel Max role of the host.
class KorelMaxSet : public Command {
 public:
  static std::shared_ptr<KorelMaxSet> New() {
    return std::shared_ptr<KorelMaxSet>(new KorelMaxSet);
  }

 private:
  KorelMaxSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows every cluster of the host.
class ClusterList : public Command {
 public:
  static std::shared_ptr<ClusterList> New() {
    return std::shared_ptr<ClusterList>(new ClusterList);
  }

 private:
  ClusterList();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One cluster.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Adds one unicast agent.
class ClusterUnicastAgentAdd : public virtual Command {
 public:
  static std::shared_ptr<ClusterUnicastAgentAdd> New() {
    return std::shared_ptr<ClusterUnicastAgentAdd>(new ClusterUnicastAgentAdd);
  }

 private:
  ClusterUnicastAgentAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Removes one unicast agent.
class ClusterUnicastAgentRemove : public virtual Command {
 public:
  static std::shared_ptr<ClusterUnicastAgentRemove> New() {
    return std::shared_ptr<ClusterUnicastAgentRemove>(new ClusterUnicastAgentRemove);
  }

 private:
  ClusterUnicastAgentRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Lists the unicast agents.
class ClusterUnicastAgentList : public virtual Command {
 public:
  static std::shared_ptr<ClusterUnicastAgentList> New() {
    return std::shared_ptr<ClusterUnicastAgentList>(new ClusterUnicastAgentList);
  }

 private:
  ClusterUnicastAgentList();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One agent.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Removes all unicast agents.
class ClusterUnicastAgentClear : public virtual Command {
 public:
  static std::shared_ptr<ClusterUnicastAgentClear> New() {
    return std::shared_ptr<ClusterUnicastAgentClear>(new ClusterUnicastAgentClear);
  }

 private:
  ClusterUnicastAgentClear();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the preferred fault domain of one cluster.
class ClusterPreferredFaultDomainGet : public virtual Command {
 public:
  static std::shared_ptr<ClusterPreferredFaultDomainGet> New() {
    return std::shared_ptr<ClusterPreferredFaultDomainGet>(new ClusterPreferredFaultDomainGet);
  }

 private:
  ClusterPreferredFaultDomainGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The fault domain.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Sets the preferred fault domain of a stretched cluster.
class ClusterPreferredFaultDomainSet : public virtual Command {
 public:
  static std::shared_ptr<ClusterPreferredFaultDomainSet> New() {
    return std::shared_ptr<ClusterPreferredFaultDomainSet>(new ClusterPreferredFaultDomainSet);
  }

 private:
  ClusterPreferredFaultDomainSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the preferred fault domain of every cluster.
class ClusterPreferredFaultDomainList : public Command {
 public:
  static std::shared_ptr<ClusterPreferredFaultDomainList> New() {
    return std::shared_ptr<ClusterPreferredFaultDomainList>(new ClusterPreferredFaultDomainList);
  }

 private:
  ClusterPreferredFaultDomainList();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One fault domain.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

}  // namespace OstrelCli::KorelNamespace
