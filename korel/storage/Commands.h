#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel storage".
namespace OstrelCli::KorelNamespace {

/// Claims devices for a disk group.
class StorageAdd : public VirtualCommand<StorageAdd> {
  friend VirtualCommand;
  StorageAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Gives a disk or a disk group back.
class StorageRemove : public VirtualCommand<StorageRemove> {
  friend VirtualCommand;
  StorageRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Lists disks with all that the host knows of them.
class StorageList : public VirtualCommand<StorageList> {
 public:
  /// An on-disk format version as administrators know it: 3 is "2.5", 4 is "3", 0 is "1", any other
  /// number stands for itself.
  static std::shared_ptr<MetaString> MarshalVersion(std::int32_t version);
  /// One disk.
  static std::shared_ptr<MetaStruct> GetOutputStructure();

 private:
  friend VirtualCommand;
  StorageList();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Reports that disks are not claimed automatically.
class StorageAutoModeGet : public VirtualCommand<StorageAutoModeGet> {
  friend VirtualCommand;
  StorageAutoModeGet();
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The mode.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Refuses to claim disks automatically.
class StorageAutoModeSet : public VirtualCommand<StorageAutoModeSet> {
  friend VirtualCommand;
  StorageAutoModeSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Mounts a disk group or a disk.
class StorageDiskgroupMount : public VirtualCommand<StorageDiskgroupMount> {
  friend VirtualCommand;
  StorageDiskgroupMount();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Unmounts a disk group or a disk.
class StorageDiskgroupUmount : public VirtualCommand<StorageDiskgroupUmount> {
  friend VirtualCommand;
  StorageDiskgroupUmount();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Rebuilds a disk group.
class StorageDiskgroupRebuild : public VirtualCommand<StorageDiskgroupRebuild> {
  friend VirtualCommand;
  StorageDiskgroupRebuild();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Puts a tag on a disk.
class StorageTagAdd : public VirtualCommand<StorageTagAdd> {
  friend VirtualCommand;
  StorageTagAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Takes a tag off a disk.
class StorageTagRemove : public VirtualCommand<StorageTagRemove> {
  friend VirtualCommand;
  StorageTagRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

}  // namespace OstrelCli::KorelNamespace
