#include "tests/lab/DiskSupport.h"

namespace lab_test {
namespace {

/// Three hosts with a group c each, of disks of which a quarter is filled: 100 of 400 GB on s400,
/// 10 of 40 on s40, 25 of 100 on s100.
class EvacuationTest : public LabTest {
 protected:
  EvacuationTest() {
    const std::vector<lab::DeviceInventory> other{Device("c"), Device("s100", 100)};
    MakeHosts({{Device("c"), Device("s400"), Device("s40", 40), Device("f", 40)}, other, other});
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

  static std::string NoRoom(const std::string& need, const std::string& place, int free) {
    return need + " GB on other mounted capacity disks of the " + place + ", and there are " +
           std::to_string(free) + " GB free";
  }
};

TEST_F(EvacuationTest, StaysOnAHostThatIsInNoClusterButIncludesThePool) {
  ExpectRefusals({{Act(&Host::RemoveDisk, "s400", "EvacuateAllData"),
                   NoRoom("EvacuateAllData needs 100", "host", 30)},
                  {Act(&Host::RemoveDisk, "s400", "EnsureObjectAccessibility"),
                   NoRoom("EnsureObjectAccessibility needs 50", "host", 30)}});
  HostControl()->AddStoragePoolDisks({"f"});
  HostControl()->RemoveStoragePoolDiskByUuid(UuidOf("f"), "EvacuateAllData");
  EXPECT_EQ(DataOn("s400"), 110) << "the first with room";
  HostControl()->AddStoragePoolDisks({"f"});
  ExpectRefused(Act(&Host::RemoveDiskGroup, "c", "EnsureObjectAccessibility"),
                NoRoom("EnsureObjectAccessibility needs 60", "host", 30));
  HostControl()->RemoveDisk("s40", "EvacuateAllData");
  EXPECT_EQ(DataOn("s400"), 120);
  HostControl()->RemoveDiskGroup("c", "NoAction");
  EXPECT_EQ(DataOn("f"), 10) << "nothing moved";
}

TEST_F(EvacuationTest, DataMovesToTheOwnHostFirstAndThenToDataHostsOfTheCluster) {
  HostControl()->CreateCluster(kClusterA, true, false);
  Join("host2", Tovrin::Korel::KorelNodeType::Witness);
  ExpectRefused(Act(&Host::RemoveDisk, "s400", "EvacuateAllData"),
                NoRoom("EvacuateAllData needs 100", "cluster", 30));
  Join("host3", Tovrin::Korel::KorelNodeType::Normal);
  HostControl()->RemoveDisk("s400", "EvacuateAllData");
  EXPECT_EQ(DataOn("s40"), 40) << "full";
  EXPECT_EQ(DataOfHost("host2"), 25) << "a witness takes no data";
  EXPECT_EQ(DataOfHost("host3"), 95);
}

TEST_F(EvacuationTest, HalfOfTheDataMovesForAccessibilityAndTheRestStaysOnAnUnmountedDisk) {
  HostControl()->CreateCluster(kClusterA, true, false);
  Join("host2", Tovrin::Korel::KorelNodeType::Normal);
  HostControl()->UnmountDiskGroupWithMode("c", "EnsureObjectAccessibility");
  EXPECT_EQ(DataOn("s400"), 50);
  EXPECT_EQ(DataOn("s40"), 5);
  EXPECT_EQ(DataOfHost("host2"), 25 + 55);
}

TEST_F(EvacuationTest, UnmountedAndUnhealthyDisksNeitherTakeNorGiveData) {
  HostControl()->CreateCluster(kClusterA, true, false);
  Join("host2", Tovrin::Korel::KorelNodeType::Normal);
  StandOn("host2");
  HostControl()->UnmountDiskGroup("c", true);
  StandOn("host1");
  MakeUnhealthy("s40");
  ExpectRefusals({{Act(&Host::RemoveDisk, "s400", "EnsureObjectAccessibility"),
                   NoRoom("EnsureObjectAccessibility needs 50", "cluster", 0)},
                  {Act(&Host::RemoveDisk, "s40", "EvacuateAllData"),
                   "device 's40' is not healthy, so its 10 GB of data cannot be moved; choose "
                   "NoAction"}});
  HostControl()->UnmountDisk("s400", true);
  ExpectRefused(Act(&Host::RemoveDisk, "s400", "EvacuateAllData"),
                "device 's400' is unmounted, so its 100 GB of data cannot be moved; mount it "
                "or choose NoAction");
  HostControl()->RemoveDiskGroup("c", "");
}

}  // namespace
}  // namespace lab_test
