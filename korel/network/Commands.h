#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel network".
namespace OstrelCli::KorelNamespace {

/// Adds an interface to the network configuration; "set" reconfigures one.
class NetworkIpAdd : public virtual Command {
 public:
  static std::shared_ptr<NetworkIpAdd> New() {
    return std::shared_ptr<NetworkIpAdd>(new NetworkIpAdd);
  }

  /// The parameters of "add" and of "set".
  static std::shared_ptr<InputSpec> GetInputSpecCommon();
  /// Adds an interface, or with `isSet` changes what the options name of one that is there.
  static void ExecuteCommon(const InputPtr& input, const OutputPtr& output, bool isSet);

 private:
  NetworkIpAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Reconfigures an interface.
class NetworkIpSet : public virtual Command {
 public:
  static std::shared_ptr<NetworkIpSet> New() {
    return std::shared_ptr<NetworkIpSet>(new NetworkIpSet);
  }

 private:
  NetworkIpSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Removes an interface; the same as NetworkRemove.
class NetworkIpRemove : public virtual Command {
 public:
  static std::shared_ptr<NetworkIpRemove> New() {
    return std::shared_ptr<NetworkIpRemove>(new NetworkIpRemove);
  }

 private:
  NetworkIpRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Removes an interface.
class NetworkRemove : public virtual Command {
 public:
  static std::shared_ptr<NetworkRemove> New() {
    return std::shared_ptr<NetworkRemove>(new NetworkRemove);
  }

 private:
  NetworkRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Lists the configured interfaces.
class NetworkList : public virtual Command {
 public:
  static std::shared_ptr<NetworkList> New() {
    return std::shared_ptr<NetworkList>(new NetworkList);
  }

 private:
  NetworkList();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One interface.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Clears the network configuration.
class NetworkClear : public virtual Command {
 public:
  static std::shared_ptr<NetworkClear> New() {
    return std::shared_ptr<NetworkClear>(new NetworkClear);
  }

 private:
  NetworkClear();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Restores the persisted network configuration.
class NetworkRestore : public virtual Command {
 public:
  static std::shared_ptr<NetworkRestore> New() {
    return std::shared_ptr<NetworkRestore>(new NetworkRestore);
  }

 private:
  NetworkRestore();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the encryption settings of one cluster.
class NetworkSecurityGet : public virtual Command {
 public:
  static std::shared_ptr<NetworkSecurityGet> New() {
    return std::shared_ptr<NetworkSecurityGet>(new NetworkSecurityGet);
  }

 private:
  NetworkSecurityGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The settings.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Changes the encryption settings of one cluster.
class NetworkSecuritySet : public virtual Command {
 public:
  static std::shared_ptr<NetworkSecuritySet> New() {
    return std::shared_ptr<NetworkSecuritySet>(new NetworkSecuritySet);
  }

 private:
  NetworkSecuritySet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the encryption settings of every cluster.
class NetworkSecurityList : public Command {
 public:
  static std::shared_ptr<NetworkSecurityList> New() {
    return std::shared_ptr<NetworkSecurityList>(new NetworkSecurityList);
  }

 private:
  NetworkSecurityList();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The settings of one cluster.
  static std::shared_ptr<MetaStruct> GetListType();
};

}  // namespace OstrelCli::KorelNamespace
