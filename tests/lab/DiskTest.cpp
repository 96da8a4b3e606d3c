#include <SQLiteCpp/Database.h>

#include <algorithm>

#include "lab/model/Lab.h"
#include "lab/store/LabFile.h"
#include "lab/store/Schema.h"
#include "tests/lab/DiskSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using Tovrin::Korel::KorelDiskInfo;
using Tovrin::Korel::KorelDiskList;
using Tovrin::Korel::KorelDiskTypes;

using DiskTest = LabTest;

TEST_F(DiskTest, GroupsGrowAndAreListed) {
  Claim(kCache1, {Disk(1), kFlash});
  Claim(kCache1, {Disk(2)});
  Claim(kCache2, {Disk(6)});
  EXPECT_THAT(Claimed(), ElementsAre(kCache1, kCache2, kFlash, Disk(1), Disk(2), Disk(6)));
  EXPECT_EQ(Disks(KorelDiskTypes::All).size(), 10U);
  std::vector<Tovrin::Korel::Uuid> uuids(1);
  HostControl()->ListDiskUuids(uuids);
  EXPECT_EQ(uuids.size(), 7U) << "appended";
  EXPECT_EQ(Info(Disk(2)).diskGroupName, kCache1);
  EXPECT_EQ(Info(Disk(2)).diskGroupUuid, UuidOf(kCache1));
}

TEST_F(DiskTest, RecordSaysWhatTheDiskIsAndWhereItServes) {
  KorelDiskInfo unclaimed = Info(Disk(1));
  EXPECT_TRUE(unclaimed.isCapacityTier);
  EXPECT_FALSE(unclaimed.isSsd || unclaimed.isUsedByThisHost || unclaimed.isMounted);
  EXPECT_EQ(unclaimed.korelUuid, UuidOf(Disk(1)));
  EXPECT_EQ(unclaimed.diskGroupUuid + unclaimed.creationTime + unclaimed.checksum, "");
  Claim(kCache1, {kFlash});
  const KorelDiskInfo info = Info(kFlash);
  EXPECT_TRUE(info.isSsd && info.isCapacityTier && info.isUsedByThisHost && info.isMounted);
  EXPECT_TRUE(info.isAllFlash && info.isChecksumOk && info.isEncryptionMetadataChecksumOk);
  EXPECT_FALSE(info.isInHxds) << "the host is in no cluster";
  EXPECT_EQ(info.onDiskFormatVersion, 20);
  EXPECT_THAT(info.creationTime, MatchesRegex("....-..-..T..:..:..Z"));
  EXPECT_FALSE(Info(kCache1).isCapacityTier);
  EXPECT_EQ(Info(kCache1).diskGroupUuid, UuidOf(kCache1));
  HostControl()->CreateCluster(kClusterA, true, false);
  EXPECT_TRUE(Info(kFlash).isInHxds);
  EXPECT_FALSE(Info(Disk(1)).isInHxds);
  Claim(kCache1, {Disk(1)});
  EXPECT_FALSE(Info(kFlash).isAllFlash);
}

TEST_F(DiskTest, UuidsStayTheSameInEveryFreshLabAndDifferBetweenHosts) {
  const std::string uuid = UuidOf(Disk(1));
  lab::InitLab({lab::StandardHost("host1"), lab::StandardHost("host2")}, true);
  EXPECT_EQ(UuidOf(Disk(1)), uuid);
  StandOn("host2");
  EXPECT_NE(UuidOf(Disk(1)), uuid);
}

TEST_F(DiskTest, DisksAreGivenBackOneByOneByGroupAndByUuid) {
  Claim(kCache1, {Disk(1), Disk(2), Disk(3)});
  Claim(kCache2, {Disk(4), Disk(5)});
  HostControl()->RemoveDisk(Disk(1), "");
  HostControl()->RemoveDiskByUuid(UuidOf(Disk(2)), "EvacuateAllData");
  EXPECT_THAT(Claimed(), ElementsAre(kCache1, kCache2, Disk(3), Disk(4), Disk(5)));
  HostControl()->RemoveDiskGroup(kCache1, "EnsureObjectAccessibility");
  EXPECT_THAT(Claimed(), ElementsAre(kCache2, Disk(4), Disk(5)));
  HostControl()->RemoveDiskByUuid(UuidOf(kCache2), "NoAction");
  EXPECT_THAT(Claimed(), IsEmpty());
  Claim(kCache2, {Disk(1)});
}

TEST_F(DiskTest, HostsHaveDisksOfTheirOwn) {
  AddHostsUpTo(2);
  Claim(kCache1, {Disk(1)});
  const std::string uuid = UuidOf(Disk(1));
  StandOn("host2");
  EXPECT_THAT(Claimed(), IsEmpty());
  ExpectRefused([&] { HostControl()->RemoveDiskByUuid(uuid, ""); },
                "the host has no device with UUID " + uuid);
  Claim(kCache1, {Disk(1)});
}

TEST_F(DiskTest, Refusals) {
  Claim(kCache1, {Disk(1), Disk(2)});
  Claim(kCache2, {Disk(3)});
  const std::string inGroup1 = " is in use in disk group '" + kCache1 + "'";
  const std::string lastOfGroup2 = "device '" + Disk(3) +
                                   "' is the last capacity device of disk group '" + kCache2 +
                                   "'; remove the whole group";
  const std::string modes =
      " is no evacuation mode: NoAction, EnsureObjectAccessibility or EvacuateAllData";
  ExpectRefusals({
      {__LINE__, "host1", [] { Claim("x", {Disk(4)}); }, "the host has no device 'x'"},
      {__LINE__, "host1",
       [] {
         Claim(kCache1, {Disk(4), "x"});
       },
       "the host has no device 'x'"},
      {__LINE__, "host1", [] { Claim(kCache1, {}); },
       "a disk group needs at least one capacity device"},
      {__LINE__, "host1",
       [] {
         Claim(kCache1, {Disk(4), Disk(4)});
       },
       "device '" + Disk(4) + "' is named twice"},
      {__LINE__, "host1", [] { Claim(kCache1, {kCache1}); },
       "device '" + kCache1 + "' is named twice"},
      {__LINE__, "host1", [] { Claim(Disk(4), {Disk(5)}); },
       "device '" + Disk(4) + "' is not flash, as caching needs"},
      {__LINE__, "host1", [] { Claim(kFlash, {Disk(5)}); },
       "device '" + kFlash + "' is tagged for capacity and cannot be used for caching"},
      {__LINE__, "host1", [] { Claim(Disk(1), {Disk(5)}); }, "device '" + Disk(1) + "'" + inGroup1},
      {__LINE__, "host1", [] { Claim(kCache2, {Disk(1)}); }, "device '" + Disk(1) + "'" + inGroup1},
      {__LINE__, "host1", [] { Claim(kCache1, {Disk(1)}); }, "device '" + Disk(1) + "'" + inGroup1},
      {__LINE__, "host1", [] { Claim(kCache2, {kCache1}); }, "device '" + kCache1 + "'" + inGroup1},
      {__LINE__, "host1", [] { HostControl()->RemoveDisk("x", ""); }, "the host has no device 'x'"},
      {__LINE__, "host1", [] { HostControl()->RemoveDisk(Disk(4), ""); },
       "device '" + Disk(4) + "' is in no disk group"},
      {__LINE__, "host1", [] { HostControl()->RemoveDisk(kCache1, ""); },
       "device '" + kCache1 + "' is the caching device of a disk group; remove the whole group"},
      {__LINE__, "host1", [] { HostControl()->RemoveDisk(Disk(3), ""); }, lastOfGroup2},
      {__LINE__, "host1", [] { HostControl()->RemoveDiskByUuid(UuidOf(Disk(3)), ""); },
       lastOfGroup2},
      {__LINE__, "host1", [] { HostControl()->RemoveDisk(Disk(1), "noAction"); },
       "'noAction'" + modes},
      {__LINE__, "host1", [] { HostControl()->RemoveDiskGroup(kCache1, "x"); }, "'x'" + modes},
      {__LINE__, "host1", [] { HostControl()->RemoveDiskByUuid(UuidOf(Disk(1)), "x"); },
       "'x'" + modes},
      {__LINE__, "host1", [] { HostControl()->RemoveDiskGroup(Disk(1), ""); },
       "device '" + Disk(1) + "' is not the caching device of a disk group"},
      {__LINE__, "host1", [] { HostControl()->RemoveDiskByUuid("x", ""); }, NotUuid("x")},
      {__LINE__, "host1",
       [] {
         KorelDiskInfo info;
         HostControl()->GetDiskInfo({1, 2}, Disks(KorelDiskTypes::All), info);
       },
       "the host has no device with UUID 00000000-0000-0001-0000-000000000002"},
  });
}

TEST_F(DiskTest, UntaggedFlashIsNotForCapacity) {
  Claim(kCache1, {Disk(1)});
  ExpectRefused([] { Claim(kCache1, {kCache2}); },
                "device '" + kCache2 + "' is flash without the capacity tag, as capacity needs");
}

TEST_F(DiskTest, AHostHasFourGroupsOfSixAtMost) {
  std::vector<lab::DeviceInventory> devices;
  for (int i = 1; i <= 5; ++i) devices.push_back(Caching("c" + std::to_string(i)));
  for (int i = 1; i <= 11; ++i) devices.push_back(Spinning("s" + std::to_string(i), 100));
  MakeHosts({devices});
  Claim("c1", {"s1", "s2", "s3", "s4", "s5", "s6"});
  ExpectRefused([] { Claim("c1", {"s7"}); },
                "disk group 'c1' would have 7 capacity devices, more than the 6 possible");
  ExpectRefused([] { Claim("c2", {"s1"}); }, "device 's1' is in use in disk group 'c1'");
  for (int group = 2; group <= 4; ++group) {
    Claim("c" + std::to_string(group), {"s" + std::to_string(group + 5)});
  }
  ExpectRefused([] { Claim("c5", {"s10"}); },
                "the host has 4 disk groups, as many as are possible");
  Claim("c4", {"s10"});
}

TEST_F(DiskTest, FiltersPickUuidsFromAList) {
  const KorelDiskList disks = Disks(KorelDiskTypes::All);
  std::string upper = UuidOf(Disk(1));
  std::transform(upper.begin(), upper.end(), upper.begin(), ::toupper);
  const struct {
    std::string device;
    std::string uuid;
    std::size_t count;
  } cases[] = {{"", "", 10}, {Disk(1), "", 1}, {"", upper, 1}, {Disk(2), upper, 0}, {"x", "", 0}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.device + " " + each.uuid);
    Names uuids{"replaced"};
    KorelUtil::FetchDiskUuids(disks, uuids, each.device, each.uuid);
    EXPECT_EQ(uuids.size(), each.count);
  }
}

TEST_F(DiskTest, GroupsOfALabOfTheFirstVersionAreKept) {
  {
    SQLite::Database old(LabFile(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    old.exec(lab::kMigrations[0]);
    old.exec("PRAGMA user_version = 1");
    old.exec("PRAGMA application_id = " + std::to_string(lab::kApplicationId));
    old.exec(
        "INSERT INTO hosts VALUES (1, 'host1', '11111111-0000-4000-8000-000000000001', NULL);"
        "INSERT INTO devices VALUES"
        " (1, 1, 's', '22222222-0000-4000-8000-000000000001', 0, 0, 400, '', ''),"
        " (2, 1, 'c', '22222222-0000-4000-8000-000000000002', 1, 0, 100, '', '');"
        "INSERT INTO claims VALUES (2, 2, 15, '2025-01-01T00:00:00Z', 0),"
        " (1, 2, 15, '2025-01-01T00:00:00Z', 0);");
  }
  EXPECT_THAT(Claimed(), ElementsAre("s", "c"));
  EXPECT_EQ(Info("s").diskGroupName, "c");
  EXPECT_EQ(Info("s").onDiskFormatVersion, 15);
  EXPECT_EQ(DataOn("s"), 100);
  EXPECT_EQ(DataOn("c"), 0);
  HostControl()->MountDiskGroup("c", false);
  HostControl()->RemoveDiskGroup("c", "");
  EXPECT_THAT(Claimed(), IsEmpty());
}

}  // namespace
}  // namespace lab_test
