#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel datastore".
namespace OstrelCli::KorelNamespace {

/// Adds a local datastore, or mounts one that another cluster exports.
class DatastoreAdd : public Command {
 public:
  static std::shared_ptr<DatastoreAdd> New() {
    return std::shared_ptr<DatastoreAdd>(new DatastoreAdd);
  }

 private:
  DatastoreAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Removes one datastore.
class DatastoreRemove : public virtual Command {
 public:
  static std::shared_ptr<DatastoreRemove> New() {
    return std::shared_ptr<DatastoreRemove>(new DatastoreRemove);
  }

 private:
  DatastoreRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Lists the datastores that the host knows.
class DatastoreList : public virtual Command {
 public:
  static std::shared_ptr<DatastoreList> New() {
    return std::shared_ptr<DatastoreList>(new DatastoreList);
  }

 private:
  DatastoreList();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One datastore.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Removes all datastores but the default one.
class DatastoreClear : public Command {
 public:
  static std::shared_ptr<DatastoreClear> New() {
    return std::shared_ptr<DatastoreClear>(new DatastoreClear);
  }

 private:
  DatastoreClear();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Shows the name of one datastore.
class DatastoreNameGet : public virtual Command {
 public:
  static std::shared_ptr<DatastoreNameGet> New() {
    return std::shared_ptr<DatastoreNameGet>(new DatastoreNameGet);
  }

 private:
  DatastoreNameGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The name.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Renames one datastore.
class DatastoreNameSet : public virtual Command {
 public:
  static std::shared_ptr<DatastoreNameSet> New() {
    return std::shared_ptr<DatastoreNameSet>(new DatastoreNameSet);
  }

 private:
  DatastoreNameSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

}  // namespace OstrelCli::KorelNamespace
