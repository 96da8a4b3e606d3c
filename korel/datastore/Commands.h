#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel datastore".
namespace OstrelCli::KorelNamespace {

/// Adds a local datastore, or mounts one that another cluster exports.
class DatastoreAdd : public PlainCommand<DatastoreAdd> {
  friend PlainCommand;
  DatastoreAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Removes one datastore.
class DatastoreRemove : public VirtualCommand<DatastoreRemove> {
  friend VirtualCommand;
  DatastoreRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Lists the datastores that the host knows.
class DatastoreList : public VirtualCommand<DatastoreList> {
  friend VirtualCommand;
  DatastoreList();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One datastore.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Removes all datastores but the default one.
class DatastoreClear : public PlainCommand<DatastoreClear> {
  friend PlainCommand;
  DatastoreClear();
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the name of one datastore.
class DatastoreNameGet : public VirtualCommand<DatastoreNameGet> {
  friend VirtualCommand;
  DatastoreNameGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The name.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Renames one datastore.
class DatastoreNameSet : public VirtualCommand<DatastoreNameSet> {
  friend VirtualCommand;
  DatastoreNameSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

}  // namespace OstrelCli::KorelNamespace
