#include "tests/lab/DiskSupport.h"

namespace lab_test {
namespace {

/// Three hosts with a group c each, of disks of which a quarter is filled: 100 of 400 GB on s400,
/// 10 of 40 on s40, 25 of 100 on s100.
class EvacuationTest : public LabTest {
 protected:
  EvacuationTest() {
    const std::vector<lab::DeviceInventory> other{Device("c"), Device("s100", 100)};
    MakeHosts({{Device("c"), Device("s400"), Device("s40", 40)}, other, other});
    Claim("c", {"s400", "s40"});
    for (const char* host : {"host2", "host3"}) {
      StandOn(host);
      Claim("c", {"s100"});
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

  /// The data on s100 of that host; host1 is stood on afterwards.
  static std::int64_t DataOfHost(const std::string& host) {
    StandOn(host);
    const std::int64_t data = DataOn("s100");
    StandOn("host1");
    return data;
  }
};

TEST_F(EvacuationTest, DataMovesToTheOwnHostFirstAndThenToDataHostsOfTheCluster) {
  HostControl()->CreateCluster(kClusterA, true, false);
  Join("host2", Tovrin::Korel::KorelNodeType::Witness);
  ExpectRefused(Act(&Host::RemoveDisk, "s400", "EvacuateAllData"),
                "EvacuateAllData needs 100 GB on other mounted capacity disks of the cluster, and "
                "there are 30 GB free");
  Join("host3", Tovrin::Korel::KorelNodeType::Normal);
  HostControl()->RemoveDisk("s400", "EvacuateAllData");
  EXPECT_EQ(DataOn("s40"), 40) << "full";
  EXPECT_EQ(DataOfHost("host2"), 25) << "a witness takes no data";
  EXPECT_EQ(DataOfHost("host3"), 95);
}

TEST_F(EvacuationTest, OtherHostsTakeDataInTheOrderInWhichTheyWereAdded) {
  HostControl()->CreateCluster(kClusterA, true, false);
  Join("host3", Tovrin::Korel::KorelNodeType::Normal);
  Join("host2", Tovrin::Korel::KorelNodeType::Normal);
  HostControl()->RemoveDiskGroup("c", "EvacuateAllData");
  EXPECT_EQ(DataOfHost("host2"), 100) << "full";
  EXPECT_EQ(DataOfHost("host3"), 25 + 35);
}

TEST_F(EvacuationTest, HalfOfTheDataMovesForAccessibilityAndTheRestStaysOnAnUnmountedDisk) {
  HostControl()->CreateCluster(kClusterA, true, false);
  Join("host2", Tovrin::Korel::KorelNodeType::Normal);
  HostControl()->UnmountDiskGroupWithMode("c", "EnsureObjectAccessibility");
  EXPECT_EQ(DataOn("s400"), 50);
  EXPECT_EQ(DataOn("s40"), 5);
  EXPECT_EQ(DataOfHost("host2"), 25 + 55);
}

TEST_F(EvacuationTest, AnUnhealthyDiskNeitherGivesNorTakesData) {
  MakeUnhealthy("s40");
  ExpectRefused(Act(&Host::RemoveDisk, "s40", "EvacuateAllData"),
                "device 's40' is not healthy, so its 10 GB of data cannot be moved; choose "
                "NoAction");
  ExpectRefused(Act(&Host::RemoveDisk, "s400", "EvacuateAllData"),
                "EvacuateAllData needs 100 GB on other mounted capacity disks of the host, and "
                "there are 0 GB free");
  HostControl()->CreateCluster(kClusterA, true, false);
  Join("host2", Tovrin::Korel::KorelNodeType::Normal);
  StandOn("host2");
  MakeUnhealthy("s100");
  StandOn("host1");
  ExpectRefused(Act(&Host::RemoveDisk, "s400", "EvacuateAllData"),
                "EvacuateAllData needs 100 GB on other mounted capacity disks of the cluster, and "
                "there are 0 GB free");
}

}  // namespace
}  // namespace lab_test
