#include <SQLiteCpp/Database.h>

#include "lab/model/Lab.h"
#include "lab/store/LabFile.h"
#include "lab/store/Schema.h"
#include "tests/lab/DiskSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::ElementsAre;
using testing::IsEmpty;
using Tovrin::Korel::KorelDiskInfo;
using Tovrin::Korel::KorelDiskTypes;
using Tovrin::Korel::KorelStoragePoolDiskInfo;

using DiskTest = DiskLabTest;

KorelStoragePoolDiskInfo PoolInfo(const std::string& device, bool fromCluster) {
  KorelStoragePoolDiskInfo info;
  KorelUtil::GetKorelStoragePoolDiskInfo(KorelUtil::StringToKorelUuid(UuidOf(device)),
                                         Disks(KorelDiskTypes::All), fromCluster, info);
  return info;
}

TEST_F(DiskTest, GroupsAndThePoolAreListed) {
  Claim("c1", {"s4"});
  EXPECT_THAT(Claimed(), ElementsAre("c1", "c2", "s1", "s2", "s3", "s4"));
  std::vector<Tovrin::Korel::Uuid> uuids(1);
  HostControl()->ListDiskUuids(uuids);
  EXPECT_EQ(uuids.size(), 8U) << "appended, the one of the pool too";
  EXPECT_EQ(Info("s4").diskGroupName + Info("s4").diskGroupUuid, "c1" + UuidOf("c1"));
  EXPECT_EQ(Info("f1").diskGroupName + Info("f1").diskGroupUuid, "");
  const std::tuple<std::string, std::string, std::size_t> filters[] = {
      {"", "", 9}, {"s1", "", 1}, {"", UuidOf("s1"), 1}, {"s2", UuidOf("s1"), 0}, {"x", "", 0}};
  for (const auto& [device, uuid, count] : filters) {
    Names picked{"replaced"};
    KorelUtil::FetchDiskUuids(Disks(KorelDiskTypes::All), picked, device, uuid);
    EXPECT_EQ(picked.size(), count) << device << " " << uuid;
  }
}

TEST_F(DiskTest, RecordSaysWhatTheDiskIsAndWhereItServes) {
  const KorelDiskInfo unclaimed = Info("f2");
  EXPECT_TRUE(unclaimed.isCapacityTier && unclaimed.isSsd);
  EXPECT_FALSE(unclaimed.isUsedByThisHost || unclaimed.isMounted);
  EXPECT_EQ(unclaimed.diskGroupUuid + unclaimed.creationTime + unclaimed.checksum, "");
  Claim("c3", {"f2"});
  const KorelDiskInfo info = Info("f2");
  EXPECT_TRUE(info.isUsedByThisHost && info.isMounted && info.isAllFlash && info.isChecksumOk);
  EXPECT_EQ(info.onDiskFormatVersion, 20);
  EXPECT_THAT(info.creationTime, testing::MatchesRegex("....-..-..T..:..:..Z"));
  EXPECT_EQ(PoolInfo("f1", true).capacityBytes, 40'000'000'000);
  EXPECT_FALSE(info.isInHxds || PoolInfo("f1", true).isInHxds) << "the host is in no cluster";
  HostControl()->CreateCluster(kClusterA, true, false);
  EXPECT_TRUE(Info("f2").isInHxds && PoolInfo("f1", true).isInHxds);
  EXPECT_FALSE(PoolInfo("f1", false).isInHxds) << "the cluster was not asked";
  Claim("c3", {"s4"});
  EXPECT_FALSE(Info("f2").isAllFlash);
}

TEST_F(DiskTest, DisksAreGivenBackOneByOneByGroupAndByUuid) {
  const auto host = HostControl();
  Claim("c1", {"s4"});
  host->AddStoragePoolDisks({"c3", "f2"});
  host->RemoveDisk("s1", "");
  host->RemoveDiskByUuid(UuidOf("s2"), "EvacuateAllData");
  EXPECT_THAT(Claimed(), ElementsAre("c1", "c2", "s3", "s4"));
  host->RemoveDiskGroup("c1", "EnsureObjectAccessibility");
  host->RemoveDiskByUuid(UuidOf("c2"), "NoAction");
  EXPECT_THAT(Claimed(), IsEmpty());
  host->RemoveStoragePoolDisk("f1", "");
  host->RemoveStoragePoolDiskByUuid(UuidOf("c3"), "NoAction");
  EXPECT_TRUE(KorelUtil::IsStoragePoolDisk("f2"));
  EXPECT_FALSE(KorelUtil::IsStoragePoolDisk("f1") || KorelUtil::IsStoragePoolDisk("c3"));
  Claim("c3", {"s1", "f1"});
}

TEST_F(DiskTest, Refusals) {
  HostControl()->AddKorelDirectTag("s4");
  const std::string group1 = " is in use in disk group 'c1'";
  const std::string inPool = "device 'f1' is in use in the storage pool";
  const std::string notGroup = "device 'f1' is in the storage pool, not in a disk group";
  const std::string notPool = "device 's1' is in disk group 'c1', not in the storage pool";
  ExpectRefusals({
      {Act(&Host::AddDisks, "c1", Names{"f2", "x"}), "the host has no device 'x'"},
      {Act(&Host::AddDisks, "c1", Names{}), "a disk group needs at least one capacity device"},
      {Act(&Host::AddDisks, "c1", Names{"f2", "f2"}), "device 'f2' is named twice"},
      {Act(&Host::AddDisks, "s4", Names{"f2"}), "device 's4' is not flash, as caching needs"},
      {Act(&Host::AddDisks, "f2", Names{"s4"}),
       "device 'f2' is tagged for capacity and cannot be used for caching"},
      {Act(&Host::AddDisks, "c1", Names{"c3"}),
       "device 'c3' is flash without the capacity tag, as capacity needs"},
      {Act(&Host::AddDisks, "c2", Names{"s1"}), "device 's1'" + group1},
      {Act(&Host::AddDisks, "c1", Names{"f1"}), inPool},
      {Act(&Host::AddDisks, "c1", Names{"s4"}),
       "device 's4' is tagged korelDirect and cannot be in a disk group"},
      {Act(&Host::RemoveDisk, "f2", ""), "device 'f2' is in no disk group"},
      {Act(&Host::RemoveDisk, "f1", ""), notGroup},
      {Act(&Host::RemoveDisk, "c1", ""),
       "device 'c1' is the caching device of a disk group; remove the whole group"},
      {Act(&Host::RemoveDisk, "s3", ""),
       "device 's3' is the last capacity device of disk group 'c2'; remove the whole group"},
      {Act(&Host::RemoveDisk, "s1", "noAction"), NotAMode("noAction")},
      {Act(&Host::RemoveDiskByUuid, "x", ""), NotUuid("x")},
      {Act(&Host::RemoveDiskGroup, "s1", ""),
       "device 's1' is not the caching device of a disk group"},
      {Act(&Host::AddStoragePoolDisks, Names{}), "no device is named for the storage pool"},
      {Act(&Host::AddStoragePoolDisks, Names{"f2", "f1"}), inPool},
      {Act(&Host::RemoveStoragePoolDisk, "f2", ""), "device 'f2' is not in the storage pool"},
      {Act(&Host::RemoveStoragePoolDiskByUuid, UuidOf("s1"), ""), notPool},
      {[] { KorelUtil::IsStoragePoolDisk("x"); }, "the host has no device 'x'"},
      {Act(&Host::GetDiskInfo, Tovrin::Korel::Uuid{1, 2}, Disks(KorelDiskTypes::All),
           KorelDiskInfo()),
       "the host has no device with UUID 00000000-0000-0001-0000-000000000002"},
      {Act(&Host::AddCapacityFlashTag, "s4"),
       "device 's4' is not flash, as the tag capacityFlash needs"},
      {Act(&Host::AddCapacityFlashTag, "f2"), "device 'f2' is tagged capacityFlash already"},
      {Act(&Host::RemoveCapacityFlashTag, "c3"), "device 'c3' is not tagged capacityFlash"},
      {Act(&Host::AddKorelDirectTag, "s4"), "device 's4' is tagged korelDirect already"},
      {Act(&Host::RemoveKorelDirectTag, "f2"), "device 'f2' is not tagged korelDirect"},
  });
}

TEST_F(DiskTest, AHostHasFourGroupsOfSixAtMost) {
  std::vector<lab::DeviceInventory> devices;
  for (int i = 1; i <= 5; ++i) devices.push_back(Device("c" + std::to_string(i)));
  for (int i = 1; i <= 10; ++i) devices.push_back(Device("s" + std::to_string(i)));
  MakeHosts({devices});
  Claim("c1", {"s1", "s2", "s3", "s4", "s5", "s6"});
  for (int i = 2; i <= 4; ++i) Claim("c" + std::to_string(i), {"s" + std::to_string(i + 5)});
  ExpectRefusals({{Act(&Host::AddDisks, "c1", Names{"s10"}),
                   "disk group 'c1' would have 7 capacity devices, more than the 6 possible"},
                  {Act(&Host::AddDisks, "c5", Names{"s10"}),
                   "the host has 4 disk groups, as many as are possible"}});
  Claim("c4", {"s10"});
}

TEST_F(DiskTest, GroupsOfALabOfTheFirstVersionAreKept) {
  lab::Store::CloseForProcess();
  std::filesystem::remove(LabFile());
  SQLite::Database(LabFile(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
      .exec(lab::kMigrations[0] + std::string("PRAGMA user_version = 1; PRAGMA application_id = ") +
            std::to_string(lab::kApplicationId) +
            "; INSERT INTO hosts VALUES"
            " (1, 'host1', '11111111-0000-4000-8000-000000000001', NULL);"
            "INSERT INTO devices VALUES"
            " (1, 1, 's', '22222222-0000-4000-8000-000000000001', 0, 0, 400, '', ''),"
            " (2, 1, 'c', '22222222-0000-4000-8000-000000000002', 1, 0, 100, '', '');"
            "INSERT INTO claims VALUES (2, 2, 15, '2025-01-01T00:00:00Z', 0),"
            " (1, 2, 15, '2025-01-01T00:00:00Z', 0);");
  EXPECT_THAT(Claimed(), ElementsAre("s", "c"));
  EXPECT_EQ(Info("s").diskGroupName, "c");
  EXPECT_EQ(Info("s").onDiskFormatVersion, 15);
  EXPECT_EQ(DataOn("s") - DataOn("c"), 100);
  HostControl()->MountDiskGroup("c", false);
  HostControl()->RemoveDiskGroup("c", "");
  EXPECT_THAT(Claimed(), IsEmpty());
}

}  // namespace
}  // namespace lab_test
