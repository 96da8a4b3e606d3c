#include "tests/lab/DiskSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::ElementsAre;
using testing::IsEmpty;
using Tovrin::Korel::KorelDiskTypes;
using Tovrin::Korel::KorelStoragePoolDiskInfo;

/// A host with a group c1 of s1, and a pool of f1.
class StoragePoolTest : public LabTest {
 protected:
  StoragePoolTest() {
    MakeHosts({{Caching("c1"), Caching("c2"), Flash("f1", 40), Flash("f2", 40), Spinning("s1", 40),
                Spinning("s2", 40)}});
    Claim("c1", {"s1"});
    Add({"f1"});
  }

  static void Add(const Names& devices) { HostControl()->AddStoragePoolDisks(devices); }

  static KorelStoragePoolDiskInfo PoolInfo(const std::string& device, bool fromCluster) {
    KorelStoragePoolDiskInfo info;
    KorelUtil::GetKorelStoragePoolDiskInfo(KorelUtil::StringToKorelUuid(UuidOf(device)),
                                           Disks(KorelDiskTypes::All), fromCluster, info);
    return info;
  }
};

TEST_F(StoragePoolTest, DisksJoinAndLeave) {
  Add({"c2", "f2"});
  for (const char* device : {"f1", "f2", "c2"}) EXPECT_TRUE(KorelUtil::IsStoragePoolDisk(device));
  for (const char* device : {"c1", "s1", "s2"}) EXPECT_FALSE(KorelUtil::IsStoragePoolDisk(device));
  HostControl()->RemoveStoragePoolDisk("f1", "");
  HostControl()->RemoveStoragePoolDiskByUuid(UuidOf("c2"), "NoAction");
  HostControl()->RemoveStoragePoolDisk("f2", "EvacuateAllData");
  EXPECT_EQ(DataOn("s1"), 20);
  for (const char* device : {"f1", "f2", "c2"}) EXPECT_FALSE(KorelUtil::IsStoragePoolDisk(device));
  Claim("c2", {"f1", "f2"});
}

TEST_F(StoragePoolTest, RecordSaysWhatTheDiskIs) {
  const KorelStoragePoolDiskInfo info = PoolInfo("f1", true);
  EXPECT_EQ(info.deviceName + info.korelUuid, "f1" + UuidOf("f1"));
  EXPECT_TRUE(info.isSsd && info.isUsedByThisHost && info.isMounted);
  EXPECT_EQ(info.capacityBytes, 40'000'000'000);
  EXPECT_EQ(info.onDiskFormatVersion, 20);
  EXPECT_FALSE(info.isInHxds) << "the host is in no cluster";
  HostControl()->CreateCluster(kClusterA, true, false);
  EXPECT_TRUE(PoolInfo("f1", true).isInHxds);
  EXPECT_FALSE(PoolInfo("f1", false).isInHxds) << "the cluster was not asked";
}

TEST_F(StoragePoolTest, DisksOfThePoolAreInTheConfigurationButInNoGroup) {
  EXPECT_THAT(Claimed(), ElementsAre("c1", "s1"));
  std::vector<Tovrin::Korel::Uuid> uuids;
  HostControl()->ListDiskUuids(uuids);
  EXPECT_EQ(uuids.size(), 3U);
  const auto info = Info("f1");
  EXPECT_TRUE(info.isUsedByThisHost && info.isMounted && info.isCapacityTier && info.isAllFlash);
  EXPECT_EQ(info.diskGroupUuid + info.diskGroupName, "");
}

TEST_F(StoragePoolTest, Refusals) {
  const auto remove = [](const std::string& device, const std::string& mode) {
    return [=] { HostControl()->RemoveStoragePoolDisk(device, mode); };
  };
  const auto add = [](const Names& devices) { return [=] { Add(devices); }; };
  const std::string inPool = "device 'f1' is in use in the storage pool";
  const std::string notInGroup = "device 'f1' is in the storage pool, not in a disk group";
  const std::string inGroup = "device 's1' is in disk group 'c1', not in the storage pool";
  ExpectRefusals({
      {__LINE__, "host1", add({}), "no device is named for the storage pool"},
      {__LINE__, "host1", add({"f2", "x"}), "the host has no device 'x'"},
      {__LINE__, "host1", add({"f2", "f2"}), "device 'f2' is named twice"},
      {__LINE__, "host1", add({"f2", "s2"}), "device 's2' is not flash, as the storage pool needs"},
      {__LINE__, "host1", add({"f2", "f1"}), inPool},
      {__LINE__, "host1", add({"c1"}), "device 'c1' is in use in disk group 'c1'"},
      {__LINE__, "host1", add({"s1"}), "device 's1' is in use in disk group 'c1'"},
      {__LINE__, "host1", [] { Claim("c1", {"f1"}); }, inPool},
      {__LINE__, "host1", [] { Claim("f1", {"s2"}); }, inPool},
      {__LINE__, "host1", [] { HostControl()->RemoveDisk("f1", ""); }, notInGroup},
      {__LINE__, "host1", [] { HostControl()->RemoveDiskByUuid(UuidOf("f1"), ""); }, notInGroup},
      {__LINE__, "host1", [] { HostControl()->UnmountDisk("f1", true); }, notInGroup},
      {__LINE__, "host1", remove("x", ""), "the host has no device 'x'"},
      {__LINE__, "host1", remove("f2", ""), "device 'f2' is not in the storage pool"},
      {__LINE__, "host1", remove("s1", ""), inGroup},
      {__LINE__, "host1", [] { HostControl()->RemoveStoragePoolDiskByUuid(UuidOf("s1"), ""); },
       inGroup},
      {__LINE__, "host1", [] { HostControl()->RemoveStoragePoolDiskByUuid("f1", ""); },
       NotUuid("f1")},
      {__LINE__, "host1", remove("f1", "evacuateAllData"),
       "'evacuateAllData' is no evacuation mode: NoAction, EnsureObjectAccessibility or "
       "EvacuateAllData"},
      {__LINE__, "host1", [] { KorelUtil::IsStoragePoolDisk("x"); }, "the host has no device 'x'"},
      {__LINE__, "host1", [] { PoolInfo("s1", true); }, inGroup},
      {__LINE__, "host1", [] { PoolInfo("f2", true); }, "device 'f2' is not in the storage pool"},
      {__LINE__, "host1",
       [] {
         KorelStoragePoolDiskInfo info;
         KorelUtil::GetKorelStoragePoolDiskInfo(KorelUtil::StringToKorelUuid(UuidOf("f1")), {},
                                                true, info);
       },
       "the host has no device with UUID " + UuidOf("f1")},
  });
}

TEST_F(StoragePoolTest, TagsDecideWhatADeviceIsFor) {
  const auto host = HostControl();
  host->AddCapacityFlashTag("c2");
  Claim("c1", {"c2"});
  EXPECT_TRUE(Info("c2").isCapacityTier);
  host->RemoveCapacityFlashTag("f2");
  Claim("f2", {"s2"});
  host->RemoveDiskGroup("f2", "");
  for (const char* device : {"f2", "s2"}) host->AddKorelDirectTag(device);
  ExpectRefused([] { Claim("f2", {"s2"}); },
                "device 'f2' is tagged korelDirect and cannot be in a disk group");
  ExpectRefused([] { Claim("c1", {"s2"}); },
                "device 's2' is tagged korelDirect and cannot be in a disk group");
  ExpectRefused([] { Add({"f2"}); },
                "device 'f2' is tagged korelDirect and cannot be in the storage pool");
  for (const char* device : {"f2", "s2"}) host->RemoveKorelDirectTag(device);
  Claim("f2", {"s2"});
}

TEST_F(StoragePoolTest, TagRefusals) {
  const struct {
    void (Tovrin::Korel::KorelInfo::*change)(const std::string&);
    const char* device;
    const char* message;
  } cases[] = {
      {&Tovrin::Korel::KorelInfo::AddCapacityFlashTag, "x", "the host has no device 'x'"},
      {&Tovrin::Korel::KorelInfo::AddCapacityFlashTag, "s2",
       "device 's2' is not flash, as the tag capacityFlash needs"},
      {&Tovrin::Korel::KorelInfo::AddCapacityFlashTag, "f2",
       "device 'f2' is tagged capacityFlash already"},
      {&Tovrin::Korel::KorelInfo::AddCapacityFlashTag, "c1",
       "device 'c1' is in use in disk group 'c1'"},
      {&Tovrin::Korel::KorelInfo::RemoveCapacityFlashTag, "c2",
       "device 'c2' is not tagged capacityFlash"},
      {&Tovrin::Korel::KorelInfo::RemoveCapacityFlashTag, "f1",
       "device 'f1' is in use in the storage pool"},
      {&Tovrin::Korel::KorelInfo::AddKorelDirectTag, "s1",
       "device 's1' is in use in disk group 'c1'"},
      {&Tovrin::Korel::KorelInfo::RemoveKorelDirectTag, "s2",
       "device 's2' is not tagged korelDirect"},
  };
  const auto host = HostControl();
  for (const auto& each : cases) {
    SCOPED_TRACE(each.message);
    ExpectRefused([&] { (host.get()->*each.change)(each.device); }, each.message);
  }
  host->AddKorelDirectTag("s2");
  ExpectRefused([&] { host->AddKorelDirectTag("s2"); },
                "device 's2' is tagged korelDirect already");
}

}  // namespace
}  // namespace lab_test
