#include "tests/lab/DiskSupport.h"

namespace lab_test {
namespace {

/// Three hosts with a group c each, of disks of which a quarter is filled: 100 of 400 GB on "big",
/// 10 of 40 on "small", 25 of 100 on "mid".
class EvacuationTest : public LabTest {
 protected:
  EvacuationTest() {
    const std::vector<lab::DeviceInventory> other{Caching("c"), Spinning("mid", 100)};
    MakeHosts(
        {{Caching("c"), Caching("c2"), Spinning("big", 400), Spinning("small", 40), Flash("f", 40)},
         other,
         other});
    Claim("c", {"big", "small"});
    for (const char* host : {"host2", "host3"}) {
      StandOn(host);
      Claim("c", {"mid"});
    }
    StandOn("host1");
  }

  static void Join(const std::string& host, Tovrin::Korel::KorelNodeType type) {
    StandOn(host);
    HostControl()->JoinCluster(HskCtl::Korel::KorelUtil::StringToKorelUuid(kClusterA), type,
                               type == Tovrin::Korel::KorelNodeType::Witness ? "host1" : "", true,
                               0, 0);
    StandOn("host1");
  }

  static std::int64_t DataOnMidOf(const std::string& host) {
    StandOn(host);
    const std::int64_t data = DataOn("mid");
    StandOn("host1");
    return data;
  }

  static void ExpectTooLittleRoom(const std::string& mode, const std::string& message) {
    ExpectRefused([&] { HostControl()->RemoveDisk("big", mode); }, message);
  }
};

TEST_F(EvacuationTest, NeedsRoomOnTheHostWhenItIsInNoCluster) {
  ExpectTooLittleRoom("EvacuateAllData",
                      "EvacuateAllData needs 100 GB on other mounted capacity disks of the host, "
                      "and there are 30 GB free");
  ExpectTooLittleRoom("EnsureObjectAccessibility",
                      "EnsureObjectAccessibility needs 50 GB on other mounted capacity disks of "
                      "the host, and there are 30 GB free");
  HostControl()->RemoveDisk("big", "NoAction");
  EXPECT_EQ(DataOn("small"), 10) << "nothing moved";
}

TEST_F(EvacuationTest, DataMovesToTheOwnHostFirstAndThenToDataHostsOfTheCluster) {
  HostControl()->CreateCluster(kClusterA, true, false);
  Join("host2", Tovrin::Korel::KorelNodeType::Witness);
  ExpectTooLittleRoom("EvacuateAllData",
                      "EvacuateAllData needs 100 GB on other mounted capacity disks of the "
                      "cluster, and there are 30 GB free");
  Join("host3", Tovrin::Korel::KorelNodeType::Normal);
  HostControl()->RemoveDisk("big", "EvacuateAllData");
  EXPECT_EQ(DataOn("small"), 40) << "full";
  EXPECT_EQ(DataOnMidOf("host2"), 25) << "a witness takes no data";
  EXPECT_EQ(DataOnMidOf("host3"), 95);
}

TEST_F(EvacuationTest, HalfOfTheDataMovesForAccessibilityAndTheRestStaysOnAnUnmountedDisk) {
  HostControl()->CreateCluster(kClusterA, true, false);
  Join("host2", Tovrin::Korel::KorelNodeType::Normal);
  HostControl()->UnmountDiskGroupWithMode("c", "EnsureObjectAccessibility");
  EXPECT_EQ(DataOn("big"), 50);
  EXPECT_EQ(DataOn("small"), 5);
  EXPECT_EQ(DataOnMidOf("host2"), 25 + 55);
}

TEST_F(EvacuationTest, UnmountedAndUnhealthyDisksNeitherTakeNorGiveData) {
  HostControl()->CreateCluster(kClusterA, true, false);
  Join("host2", Tovrin::Korel::KorelNodeType::Normal);
  StandOn("host2");
  HostControl()->UnmountDiskGroup("c", true);
  StandOn("host1");
  MakeUnhealthy("small");
  ExpectTooLittleRoom("EnsureObjectAccessibility",
                      "EnsureObjectAccessibility needs 50 GB on other mounted capacity disks of "
                      "the cluster, and there are 0 GB free");
  ExpectRefused([] { HostControl()->RemoveDisk("small", "EvacuateAllData"); },
                "device 'small' is not healthy, so its 10 GB of data cannot be moved; choose "
                "NoAction");
  HostControl()->UnmountDisk("big", true);
  ExpectTooLittleRoom("EvacuateAllData",
                      "device 'big' is unmounted, so its 100 GB of data cannot be moved; mount it "
                      "or choose NoAction");
  HostControl()->RemoveDiskGroup("c", "");
}

TEST_F(EvacuationTest, GroupsAndThePoolTakeEachOthersData) {
  HostControl()->AddStoragePoolDisks({"f"});
  HostControl()->RemoveDisk("small", "EvacuateAllData");
  EXPECT_EQ(DataOn("big"), 110) << "the first with room";
  HostControl()->RemoveStoragePoolDiskByUuid(UuidOf("f"), "EvacuateAllData");
  EXPECT_EQ(DataOn("big"), 120);
  HostControl()->AddStoragePoolDisks({"f"});
  ExpectRefused([] { HostControl()->RemoveDiskGroup("c", "EnsureObjectAccessibility"); },
                "EnsureObjectAccessibility needs 60 GB on other mounted capacity disks of the "
                "host, and there are 30 GB free");
}

}  // namespace
}  // namespace lab_test
