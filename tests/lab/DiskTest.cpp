#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelDiskList;
using Tovrin::Korel::KorelDiskTypes;
using DiskTest = DisksTest;

TEST_F(DiskTest, DevicesAreClaimedTaggedAndGivenBack) {
  Expect(Groups, R"(
                                          -> c1(s1:100 s2:100) c2(s3:100) pool(f1:10)
1 claim c1 s4 f2                          -> c1(s1:100 s2:100 s4:0 f2:0) c2(s3:100) pool(f1:10)
1 claim c3 f2                             -> c1(s1:100 s2:100) c2(s3:100) c3(f2:0) pool(f1:10)
1 pool f2 c3                              -> c1(s1:100 s2:100) c2(s3:100) pool(c3:0 f1:10 f2:0)
1 claim c1 s4; 1 data s4 400              -> c1(s1:100 s2:100 s4:400) c2(s3:100) pool(f1:10)
1 data s1 0; 1 data f1 40                 -> c1(s1:0 s2:100) c2(s3:100) pool(f1:40)
1 unclaim s1                              -> c1(s2:100) c2(s3:100) pool(f1:10)
1 unclaim #s2 NoAction                    -> c1(s1:100) c2(s3:100) pool(f1:10)
1 ungroup c1; 1 claim c1 s1               -> c1(s1:0) c2(s3:100) pool(f1:10)
1 ungroup c1                              -> c2(s3:100) pool(f1:10)
1 unclaim #c2                             -> c1(s1:100 s2:100) pool(f1:10)
1 unpool f1 / 1 unpool #f1                -> c1(s1:100 s2:100) c2(s3:100) pool()
1 pool c3; 1 data c3 40; 1 unpool #c3 half -> c1(s1:100 s2:100) c2(s3:100) pool(f1:30)
1 pool f2; 1 unpool f1 all                -> c1(s1:100 s2:100) c2(s3:100) pool(f2:10)
1 ungroup c2; 1 flash c2; 1 claim c1 c2   -> c1(c2:0 s1:100 s2:100) pool(f1:10)
1 unflash f2; 1 claim f2 s4               -> c1(s1:100 s2:100) c2(s3:100) f2(s4:0) pool(f1:10)
1 unflash f2; 1 pool f2 / 1 direct f2; 1 undirect f2; 1 pool f2 -> c1(s1:100 s2:100) c2(s3:100) pool(f1:10 f2:0)
1 direct s4; 1 undirect s4; 1 claim c2 s4 -> c1(s1:100 s2:100) c2(s3:100 s4:0) pool(f1:10)
)");
}

TEST_F(DiskTest, Refusals) {
  ExpectRefusals(R"(
1 claim c3 x / 1 claim x s4 / 1 sick x -> the host has no device 'x'; 'autocli lab disk list' lists...
1 claim c3     -> a disk group needs at least one capacity device
1 claim c3 s4 s4 / 1 claim c3 s4 c3 / 1 pool f2 f2 -> device... is named twice
1 pool         -> no device is named for the storage pool
1 claim s4 f2  -> device 's4' is not flash, as caching needs; 'autocli lab disk list'...
1 claim f2 s4  -> device 'f2' is tagged for capacity and...; 'korel storage tag remove --tag capacityFlash --disk f2' takes...
1 claim c1 s4 c3 / 1 unflash f2; 1 claim c1 f2 -> device... is flash without the capacity tag...; 'korel storage tag add --tag capacityFlash --disk...
1 claim c2 s1 / 1 claim s1 s4 / 1 direct s1 / 1 pool s1 -> device... is in use in disk group 'c1'; 'korel storage remove --disk s1 --evacuation-mode noAction' takes it...
1 claim c3 c1 / 1 pool c1 / 1 flash c1 -> device... is in use in disk group 'c1'; 'korel storage remove --ssd c1...
1 claim c1 s3  -> device... is in use in disk group 'c2'; 'korel storage remove --ssd c2...
1 claim f1 s4 / 1 claim c1 f1 / 1 pool f2 f1 / 1 unflash f1 -> device... is in use in the storage pool; 'korel storagepool remove --disk f1...
1 sick s4; 1 claim c1 s4 / 1 sick s4; 1 claim c3 f2 s4 -> device 's4' is not healthy; 'autocli lab disk remove --device s4'...
1 sick c3; 1 claim c3 s4 / 1 sick c3; 1 pool f2 c3 -> device 'c3' is not healthy; 'autocli...
1 sick c1; 1 claim c1 s4 -> the caching device 'c1' is not healthy, and its disk group...
1 pool s4      -> device 's4' is not flash, as the storage pool needs; 'autocli lab disk list'...
1 direct c3; 1 claim c3 s4 / 1 direct s4; 1 claim c3 s4 -> ... is tagged korelDirect and cannot...
1 direct f2; 1 pool f2 -> device 'f2' is tagged korelDirect and...; 'korel storage tag remove --tag korelDirect --disk f2' takes...
1 unclaim f2   -> device 'f2' is in no disk group; 'korel storage list' lists what is
1 unclaim f1   -> device 'f1' is in the storage pool, not in a disk group; 'korel storagepool list'...
1 unclaim c1   -> device 'c1' is the caching device of a disk group; remove the whole group, with --ssd c1
1 unclaim #s3  -> device 's3' is the last capacity device of disk group 'c2'; 'korel storage remove --ssd c2'...
1 ungroup s1 / 1 ungroup c3 -> device... is not the caching device of a disk group; 'korel storage list'...
1 unpool f2    -> device 'f2' is not in the storage pool; 'korel storagepool list' lists what is
1 unpool #s1   -> device 's1' is in disk group 'c1', not in the storage pool; 'korel storage remove --disk s1...
1 flash s4     -> device 's4' is not flash, as the tag capacityFlash needs; 'autocli lab disk list'...
1 flash f2     -> device 'f2' is tagged capacityFlash already; 'autocli lab disk list'...
1 unflash c3   -> device 'c3' is not tagged capacityFlash; 'autocli lab disk list'...
1 direct s4; 1 direct s4 -> device 's4' is tagged korelDirect already; 'autocli lab disk list'...
1 undirect s4  -> device 's4' is not tagged korelDirect; 'autocli lab disk list'...
1 format s4 20 / 1 saving s4 none / 1 encrypted s4 none / 1 wrong s4 none / 1 data s4 1 -> device 's4' is not in use; 'korel storage add' or 'korel storagepool add' puts it into use
1 occupied s1 partitions -> device 's1' is in use in disk group 'c1'; ...
1 occupied s4 partitions; 1 claim c1 s4 / 1 occupied s4 partitions; 1 claim c3 s4 -> device 's4' has partitions; 'autocli lab disk set --occupant none --device s4' empties it
1 occupied c3 other; 1 claim c3 s4 / 1 occupied c3 other; 1 pool c3 -> device 'c3' is in use by another host; 'autocli lab disk set...
1 saving s1 dedup / 1 saving c2 compression -> disk group... has spinning disks, and deduplication...
1 claim c3 f2; 1 saving c3 dedup; 1 claim c3 s4 -> device 's4' is not flash, as disk group 'c3' needs for...
1 wrong s1 encryption -> device 's1' is not encrypted...; 'autocli lab disk set --encryption on --device s1' encrypts it
1 data c1 1    -> device 'c1' is the caching device of a disk group, whose data lies on its capacity...
1 data f1 -1 / 1 data f1 41 -> the data on device 'f1' in GB must be from 0 to 40, got...
1 format s1 0 / 1 format s1 21 -> on-disk format versions are 1 to 20, got...
1 unclaim s1 x / 1 unclaim #s1 x / 1 ungroup c1 x / 1 unpool f1 x / 1 unpool #f1 x -> 'x' is no...
1 emptygroup c1 x / 1 rebuild c1 x 0 -> 'x' is no evacuation mode: NoAction, half or all
)");
}

TEST_F(DiskTest, AHostHasFourGroupsOfSixAtMost) {
  MakeHosts("c1 c2 c3 c4 c5 s1 s2 s3 s4 s5 s6 s7 s8 s9 s10 / c1 s1");
  ASSERT_EQ(Play("1 claim c1 s1 s2 s3 s4 s5; 1 claim c2 s7; 1 claim c3 s8"), "");
  ExpectRefusals(R"(
1 claim c1 s6 s10 -> disk group 'c1' would have 7 capacity devices, more than the 6 possible
1 claim c1 s6; 1 claim c1 s10 -> disk group 'c1' would have 7 capacity devices, more...
1 claim c4 s9; 1 claim c5 s10 -> the host has 4 disk groups, as many as are possible; 'korel storage remove --ssd'...
)");
  Expect([] { return ""; }, "1 claim c4 s9; 1 claim c4 s10; 1 claim c1 s6; 2 claim c1 s1 ->");
}

TEST_F(DiskTest, GroupsAndDisksGoOutOfUseAndComeBack) {
  Expect(Groups, R"(
1 unmount s1 force / 1 sick s1; 1 unmount #c1; 1 mountgroup c1 force -> c1(s1:100- s2:100) c2(s3:100) pool(f1:10)
1 unmount #s1; 1 mount s1; 1 unmount #s2; 1 mount #s2 / 1 unmountgroup c1 force; 1 mountgroup c1 -> c1(s1:100 s2:100) c2(s3:100) pool(f1:10)
1 unmount s1 force; 1 unmount #c1; 1 mount #c1 / 1 sick s1; 1 unmount #c1; 1 well s1; 1 mount #c1 -> c1(s1:100 s2:100) c2(s3:100) pool(f1:10)
1 unmountgroup c1 force                               -> c1-(s1:100- s2:100-) c2(s3:100) pool(f1:10)
1 unmount #c2 / 1 emptygroup c2 NoAction / 1 unmount s1 force; 1 unmount #c2; 1 mountgroup c1 -> c1(s1:100 s2:100) c2-(s3:100-) pool(f1:10)
1 rebuild c1 - 1; 1 unmount s1; 1 unmountgroup c1     -> c1-(s1:0- s2:0-) c2(s3:100) pool(f1:10)
1 unmountgroup c1 force; 1 unmount #c2; 1 rebuild c1 - 0 -> c1(s1:0 s2:0) c2-(s3:100-) pool(f1:10)
1 rebuild #c1 - 2                                     -> c1(s1:0 s2:0) c2(s3:100) pool(f1:10)
1 sick s1; 1 rebuild c1 - 2 force                     -> c1(s1:100 s2:0) c2(s3:100) pool(f1:10)
)");
}

TEST_F(DiskTest, RefusalsOfGroups) {
  ExpectRefusals(R"(
1 mount c1             -> device 'c1' is the caching device of a disk group; mount the whole group, with --ssd c1
1 unmount c1 force     -> device 'c1' is the caching device of a disk group; unmount the whole group, with --ssd c1
1 mount s1             -> device 's1' is mounted already; 'korel storage list'...
1 unmount s1 force; 1 unmount #s1 -> device 's1' is unmounted already; 'korel storage list'...
1 unmount #c2; 1 mount s3 -> device 's3' cannot be mounted alone: disk group 'c2' is unmounted; 'korel storage diskgroup mount --ssd c2' mounts it
1 mountgroup s1 / 1 rebuild #s1 - 0 -> device... is not the caching device of a disk group; ...
1 mountgroup c1 force  -> disk group 'c1' is mounted already; 'korel storage list'...
1 unmount #c2; 1 unmountgroup c2 force / 1 unmount #c2; 1 unmount #c2 -> ... 'c2' is unmounted already; 'korel storage list'...
1 unmount #c2; 1 emptygroup c2 -> disk group 'c2' is unmounted already; 'korel storage list'...
1 unmount #c2; 1 claim c2 s4 -> disk group 'c2' is unmounted; 'korel storage diskgroup mount --ssd c2' mounts it
1 unmount s1           -> device 's1' is in use: it holds 100 GB of data
1 unmountgroup c1      -> disk group 'c1' is in use: it holds 200 GB of data
1 rebuild c1 - 3 force -> there is no trim code 3: 0 metadata...
1 rebuild c1 - -1      -> there is no trim code -1: 0 metadata...
1 sick s2; 1 unmount s2 force; 1 mount s2 -> device 's2' is not healthy; 'korel storage remove --disk s2 --evacuation-mode noAction' removes it
1 sick s2; 1 rebuild c1 - 0 -> disk group 'c1' has unhealthy disks: s2; --force leaves them out
1 claim c1 s4; 1 sick s1; 1 sick s2; 1 rebuild c1 - 0 -> disk group 'c1' has unhealthy disks: s1, s2; --force...
1 sick s2; 1 unmount #c1; 1 mountgroup c1 -> disk group 'c1' has unhealthy disks: s2; 'korel storage remove --disk s2 --evacuation-mode noAction' takes the first out
1 sick s3; 1 unmount #c2; 1 mount #c2 -> disk group 'c2' has no healthy capacity device; 'korel storage remove --ssd c2 --evacuation-mode noAction' removes the group
1 sick s1; 1 sick s2; 1 rebuild c1 - 0 force -> disk group 'c1' has no healthy capacity device; ...
1 encrypted s2 missing; 1 rebuild c1 - 0 / 1 wrong s2 disk; 1 rebuild c1 - 0 -> disk group 'c1' has unhealthy disks: s2; --force...
1 encrypted s2 missing; 1 unmount s2 force; 1 mount s2 -> device 's2' lacks its key, which 'autocli lab disk set --encryption on --device s2' loads; 'korel storage remove --disk s2...
1 wrong s2 disk; 1 unmount s2 force; 1 mount s2 -> device 's2' has a wrong checksum; 'korel storage...
1 encrypted c1 missing; 1 claim c1 s4 -> the caching device 'c1' lacks its key, which 'autocli lab disk set --encryption on --device c1' loads, and its disk group...
1 sick c1; 1 rebuild c1 - 0 force / 1 sick c1; 1 unmount #c1; 1 mountgroup c1 force / 1 unmount s1 force; 1 sick c1; 1 mount s1 -> the caching device 'c1' is not healthy, and its disk group cannot do without it; 'korel storage remove --ssd c1 --evacuation-mode noAction' removes the group
)");
  Again();
  ASSERT_EQ(Play("1 sick s1"), "");
  Texts skipped;
  HostControl()->RebuildDiskGroupByUuid(Long("#c1"), "", 1, true, skipped);
  EXPECT_THAT(skipped, testing::ElementsAre("s1"));
}

TEST_F(DiskTest, AGroupThatIsNotThereIsNoOperationsEnd) {
  Sql("UPDATE claims SET cachingDevice = 999 WHERE device <> cachingDevice");
  const std::string problem = "device 's1' is in a disk group that the host does not have";
  ExpectRefusals("1 unmount s1 force -> " + problem + "\n1 unpool s1 NoAction -> " + problem);
}

TEST_F(DiskTest, RecordsSayWhatADiskIs) {
  const auto records = [] {
    KorelDiskList disks;
    KorelUtil::GetKorelDisks(disks, KorelDiskTypes::All);
    std::string all;
    for (const char* device : {"#s1", "#c3"}) {
      Tovrin::Korel::KorelDiskInfo info;
      At("host1")->GetDiskInfo(KorelUtil::StringToKorelUuid(Long(device)), disks, info);
      const std::string& group = info.diskGroupName;
      EXPECT_EQ(info.diskGroupUuid, group.empty() ? "" : Long("#" + group));
      all +=
          std::to_string(info.onDiskFormatVersion) + group + (info.isSsd ? " flash" : " disk") +
          (info.isCapacityTier ? " capacity" : "") + (info.isAllFlash ? " all-flash" : "") +
          (info.isUsedByThisHost ? info.isChecksumOk ? " used" : " bad" : "") +
          (info.isMounted ? " mounted" : "") +
          (info.dataEfficiencyMode > 0 ? " saving" + std::to_string(info.dataEfficiencyMode) : "") +
          (info.isEncrypted ? info.isDiskKeyLoaded ? " encrypted" : " locked" : "") +
          (info.isUsedByThisHost && !info.isEncryptionMetadataChecksumOk ? " odd" : "") +
          (info.isInHxds ? " shared; " : "; ");
    }
    for (const char* device : {"c1", "s1", "f1", "c3"}) {
      if (KorelUtil::IsStoragePoolDisk(device)) all += device;
    }
    Tovrin::Korel::KorelStoragePoolDiskInfo pool;
    KorelUtil::GetKorelStoragePoolDiskInfo(KorelUtil::StringToKorelUuid(Long("#f1")), disks, true,
                                           pool);
    EXPECT_EQ(pool.capacityBytes, 40'000'000'000);
    KorelUtil::GetKorelDisks(disks, KorelDiskTypes::Claimed);
    std::vector<Tovrin::Korel::Uuid> uuids;
    HostControl()->ListDiskUuids(uuids);
    return all + " " + std::to_string(disks.size()) + " " + std::to_string(uuids.size());
  };
  Expect(records, R"(
                             -> 20c1 disk capacity used mounted; 0 flash; f1 5 6
1 format s1 19; 1 rebuild c1 - 2 -> 20c1 disk capacity used mounted; 0 flash; f1 5 6
1 create A                   -> 20c1 disk capacity used mounted shared; 0 flash; f1 5 6
1 client C; 1 flash c3       -> 20c1 disk capacity used mounted; 0 flash capacity; f1 5 6
1 format s1 1; 1 sick s1     -> 1c1 disk capacity bad mounted; 0 flash; f1 5 6
1 unclaim s1; 1 pool c3      -> 0 disk capacity; 20 flash capacity all-flash used mounted; f1c3 4 6
1 unmount #s1; 1 claim c3 f2 -> 20c1 disk capacity used; 20c3 flash all-flash used mounted; f1 7 8
1 occupied c3 other; 1 occupied s4 partitions -> 20c1 disk capacity used mounted; 20 flash; f1 5 6
1 wrong s1 disk; 1 pool c3; 1 saving c3 dedup -> 20c1 disk capacity bad mounted; 20 flash capacity all-flash used mounted saving1; f1c3 5 7
1 claim c3 f2; 1 saving f2 compression; 1 encrypted s2 loaded -> 20c1 disk capacity used mounted encrypted; 20c3 flash all-flash used mounted saving2; f1 7 8
1 encrypted s1 missing; 1 claim c3 f2; 1 encrypted f2 missing -> 20c1 disk capacity used mounted locked; 20c3 flash all-flash used mounted encrypted; f1 7 8
1 encrypted s2 loaded; 1 wrong s1 encryption -> 20c1 disk capacity used mounted encrypted odd; 0 flash; f1 5 6
1 encrypted s2 loaded; 1 wrong s1 encryption; 1 encrypted s2 none -> 20c1 disk capacity used mounted; 0 flash; f1 5 6
1 encrypted c1 loaded; 1 unclaim s1; 1 claim c1 s1; 1 claim c3 f2; 1 saving c3 dedup; 1 saving c3 none -> 20c1 disk capacity used mounted encrypted; 20c3 flash all-flash used mounted; f1 7 8
1 claim c3 f2; 1 encrypted c3 missing; 1 rebuild c1 - 2; 1 encrypted f2 loaded -> 20c1 disk capacity used mounted; 20c3 flash all-flash used mounted locked; f1 7 8
1 claim c3 f2 s4; 1 sick s4  -> 20c1 disk capacity used mounted; 20c3 flash used mounted; f1 8 9
)");
}

}  // namespace
}  // namespace lab_test
