#pragma once

#include "korel/frame/Frame.h"

/// The commands of "korel storage".
namespace OstrelCli::KorelNamespace {

/// Claims devices for a disk group.
class StorageAdd : public virtual Command {
 public:
  static std::shared_ptr<StorageAdd> New() { return std::shared_ptr<StorageAdd>(new StorageAdd); }

 private:
  StorageAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Gives a disk or a disk group back.
class StorageRemove : public virtual Command {
 public:
  static std::shared_ptr<StorageRemove> New() {
    return std::shared_ptr<StorageRemove>(new StorageRemove);
  }

 private:
  StorageRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Lists disks with all that the host knows of them.
class StorageList : public virtual Command {
 public:
  static std::shared_ptr<StorageList> New() {
    return std::shared_ptr<StorageList>(new StorageList);
  }

  /// An on-disk format version as administrators know it: 3 is "2.5", 4 is "3", 0 is "1", any other
  /// number stands for itself.
  static std::shared_ptr<MetaString> MarshalVersion(std::int32_t version);
  /// One disk.
  static std::shared_ptr<MetaStruct> GetOutputStructure();

 private:
  StorageList();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Reports that disks are not claimed automatically.
class StorageAutoModeGet : public virtual Command {
 public:
  static std::shared_ptr<StorageAutoModeGet> New() {
    return std::shared_ptr<StorageAutoModeGet>(new StorageAutoModeGet);
  }

 private:
  StorageAutoModeGet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;

  /// The mode.
  static std::shared_ptr<MetaStruct> GetOutputStructure();
};

/// Refuses to claim disks automatically.
class StorageAutoModeSet : public virtual Command {
 public:
  static std::shared_ptr<StorageAutoModeSet> New() {
    return std::shared_ptr<StorageAutoModeSet>(new StorageAutoModeSet);
  }

 private:
  StorageAutoModeSet();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Mounts a disk group or a disk.
class StorageDiskgroupMount : public virtual Command {
 public:
  static std::shared_ptr<StorageDiskgroupMount> New() {
    return std::shared_ptr<StorageDiskgroupMount>(new StorageDiskgroupMount);
  }

 private:
  StorageDiskgroupMount();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Unmounts a disk group or a disk.
class StorageDiskgroupUmount : public virtual Command {
 public:
  static std::shared_ptr<StorageDiskgroupUmount> New() {
    return std::shared_ptr<StorageDiskgroupUmount>(new StorageDiskgroupUmount);
  }

 private:
  StorageDiskgroupUmount();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Rebuilds a disk group.
class StorageDiskgroupRebuild : public virtual Command {
 public:
  static std::shared_ptr<StorageDiskgroupRebuild> New() {
    return std::shared_ptr<StorageDiskgroupRebuild>(new StorageDiskgroupRebuild);
  }

 private:
  StorageDiskgroupRebuild();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Puts a tag on a disk.
class StorageTagAdd : public virtual Command {
 public:
  static std::shared_ptr<StorageTagAdd> New() {
    return std::shared_ptr<StorageTagAdd>(new StorageTagAdd);
  }

 private:
  StorageTagAdd();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

/// Takes a tag off a disk.
class StorageTagRemove : public virtual Command {
 public:
  static std::shared_ptr<StorageTagRemove> New() {
    return std::shared_ptr<StorageTagRemove>(new StorageTagRemove);
  }

 private:
  StorageTagRemove();
  std::shared_ptr<InputSpec> GetInputSpecInternal() override;
  std::shared_ptr<OutputSpec> GetOutputSpecInternal() override;
  void ExecuteInternal(const InputPtr& input, const OutputPtr& output) override;
};

}  // namespace OstrelCli::KorelNamespace
