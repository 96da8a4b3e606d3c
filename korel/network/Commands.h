#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel network".
namespace OstrelCli::KorelNamespace {

/// Adds an interface to the network configuration; "set" reconfigures one.
class NetworkIpAdd : public VirtualCommand<NetworkIpAdd> {
 public:
  /// The parameters of "add" and of "set".
  static std::shared_ptr<InputSpec> GetInputSpecCommon();
  /// Adds an interface, or with `isSet` changes what the options name of one that is there.
  static void ExecuteCommon(const InputPtr& input, const OutputPtr& output, bool isSet);

 private:
  friend VirtualCommand;
  NetworkIpAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Reconfigures an interface.
class NetworkIpSet : public VirtualCommand<NetworkIpSet> {
  friend VirtualCommand;
  NetworkIpSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Removes an interface; the same as NetworkRemove.
class NetworkIpRemove : public VirtualCommand<NetworkIpRemove> {
  friend VirtualCommand;
  NetworkIpRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Removes an interface.
class NetworkRemove : public VirtualCommand<NetworkRemove> {
  friend VirtualCommand;
  NetworkRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Lists the configured interfaces.
class NetworkList : public VirtualCommand<NetworkList> {
  friend VirtualCommand;
  NetworkList();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One interface.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Clears the network configuration.
class NetworkClear : public VirtualCommand<NetworkClear> {
  friend VirtualCommand;
  NetworkClear();
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Restores the persisted network configuration.
class NetworkRestore : public VirtualCommand<NetworkRestore> {
  friend VirtualCommand;
  NetworkRestore();
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the encryption settings of one cluster.
class NetworkSecurityGet : public VirtualCommand<NetworkSecurityGet> {
  friend VirtualCommand;
  NetworkSecurityGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The settings.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Changes the encryption settings of one cluster.
class NetworkSecuritySet : public VirtualCommand<NetworkSecuritySet> {
  friend VirtualCommand;
  NetworkSecuritySet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the encryption settings of every cluster.
class NetworkSecurityList : public PlainCommand<NetworkSecurityList> {
  friend PlainCommand;
  NetworkSecurityList();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The settings of one cluster.
  static std::shared_ptr<MetaStruct> GetListType();
};

}  // namespace OstrelCli::KorelNamespace
