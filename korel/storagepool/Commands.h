#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel storagepool".
namespace OstrelCli::KorelNamespace {

/// Claims disks for the storage pool.
class StoragePoolAdd : public VirtualCommand<StoragePoolAdd> {
  friend VirtualCommand;
  StoragePoolAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Gives a disk of the storage pool back.
class StoragePoolRemove : public PlainCommand<StoragePoolRemove> {
  friend PlainCommand;
  StoragePoolRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Lists the disks of the storage pool.
class StoragePoolList : public PlainCommand<StoragePoolList> {
  friend PlainCommand;
  StoragePoolList();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// One disk.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

}  // namespace OstrelCli::KorelNamespace
