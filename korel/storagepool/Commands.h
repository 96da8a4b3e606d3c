#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel storagepool".
namespace OstrelCli::KorelNamespace {

/// Claims disks for the storage pool.
class StoragePoolAdd : public virtual Command {
 public:
  static std::shared_ptr<StoragePoolAdd> New() {
    return std::shared_ptr<StoragePoolAdd>(new StoragePoolAdd);
  }

 private:
  StoragePoolAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Gives a disk of the storage pool back.
class StoragePoolRemove : public Command {
 public:
  static std::shared_ptr<StoragePoolRemove> New() {
    return std::shared_ptr<StoragePoolRemove>(new StoragePoolRemove);
  }

 private:
  StoragePoolRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Lists the disks of the storage pool.
class StoragePoolList : public Command {
 public:
  static std::shared_ptr<StoragePoolList> New() {
    return std::shared_ptr<StoragePoolList>(new StoragePoolList);
  }

 private:
  StoragePoolList();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One disk.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

}  // namespace OstrelCli::KorelNamespace
