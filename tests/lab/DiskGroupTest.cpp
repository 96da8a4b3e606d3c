#include "lab/model/Disks.h"
#include "lab/model/Features.h"
#include "lab/model/Lab.h"
#include "tests/lab/DiskSupport.h"

namespace lab_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using DiskGroupTest = DiskLabTest;

/// Names of the devices in disk groups that are mounted.
Names Mounted() {
  Names names;
  for (const std::string& name : Claimed()) {
    if (Info(name).isMounted) names.push_back(name);
  }
  return names;
}

Names Rebuild(const std::string& caching, const std::string& mode, int trim) {
  Names skipped{"replaced"};
  HostControl()->RebuildDiskGroup(caching, mode, trim, true, skipped);
  return skipped;
}

TEST_F(DiskGroupTest, GroupsAndDisksGoOutOfUseAndComeBack) {
  const auto host = HostControl();
  host->UnmountDisk("s1", true);
  EXPECT_THAT(Mounted(), ElementsAre("c1", "c2", "s2", "s3"));
  host->UnmountDiskGroup("c1", true);
  host->UnmountDiskByUuid(UuidOf("c2"));
  EXPECT_THAT(Mounted(), IsEmpty());
  EXPECT_EQ(DataOn("s1"), 100) << "it stays on the disk";
  host->MountDiskGroup("c1", false);
  EXPECT_THAT(Mounted(), ElementsAre("c1", "s1", "s2")) << "the disk unmounted alone too";
  host->UnmountDiskByUuid(UuidOf("s2"));
  host->MountDiskByUuid(UuidOf("c2"));
  EXPECT_THAT(Mounted(), ElementsAre("c1", "c2", "s1", "s3"));
  host->MountDisk("s2");
  host->UnmountDisk("s2", true);
  host->MountDiskByUuid(UuidOf("s2"));
  EXPECT_THAT(Mounted(), ElementsAre("c1", "c2", "s1", "s2", "s3"));
}

TEST_F(DiskGroupTest, Refusals) {
  HostControl()->UnmountDiskGroup("c2", true);
  lab::InLab([](lab::Store& store) { lab::SetFeature(store, "rebuild-trim", false); });
  const std::string notCaching = "device 's1' is not the caching device of a disk group";
  ExpectRefusals({
      {Act(&Host::MountDisk, "s4"), "device 's4' is in no disk group"},
      {Act(&Host::MountDisk, "c1"),
       "device 'c1' is the caching device of a disk group; mount the whole group"},
      {Act(&Host::MountDisk, "s3"),
       "device 's3' cannot be mounted alone: disk group 'c2' is unmounted"},
      {Act(&Host::MountDisk, "s1"), "device 's1' is mounted already"},
      {Act(&Host::MountDiskByUuid, "x"), NotUuid("x")},
      {Act(&Host::MountDiskGroup, "s1", false), notCaching},
      {Act(&Host::MountDiskGroup, "c1", true), "disk group 'c1' is mounted already"},
      {Act(&Host::AddDisks, "c2", Names{"s4"}), "disk group 'c2' is unmounted; mount it first"},
      {Act(&Host::UnmountDisk, "c1", true),
       "device 'c1' is the caching device of a disk group; unmount the whole group"},
      {Act(&Host::UnmountDisk, "s3", true), "device 's3' is unmounted already"},
      {Act(&Host::UnmountDisk, "s1", false), "device 's1' is in use: it holds 100 GB of data"},
      {Act(&Host::UnmountDiskGroup, "c1", false),
       "disk group 'c1' is in use: it holds 200 GB of data"},
      {Act(&Host::UnmountDiskGroup, "c2", true), "disk group 'c2' is unmounted already"},
      {Act(&Host::UnmountDiskGroupWithMode, "c1", "noAction"), NotAMode("noAction")},
      {Act(&Host::UnmountDiskGroupWithMode, "c1", "EvacuateAllData"),
       "EvacuateAllData needs 200 GB on other mounted capacity disks of the host, and there are 30 "
       "GB free"},
      {Act(&Host::RebuildDiskGroup, "s1", "", 2, true, Names{}), notCaching},
      {Act(&Host::RebuildDiskGroup, "c1", "", 3, true, Names{}),
       "there is no trim code 3: 0 metadata only, 1 full disk, 2 none"},
      {Act(&Host::RebuildDiskGroup, "c1", "", 0, true, Names{}),
       "this host cannot trim disks in a rebuild"},
  });
}

TEST_F(DiskGroupTest, UnhealthyDisksAreLeftOutOnlyByForce) {
  for (const char* device : {"s1", "s3"}) MakeUnhealthy(device);
  EXPECT_FALSE(Info("s1").isChecksumOk);
  for (const char* group : {"c1", "c2"}) HostControl()->UnmountDiskGroup(group, true);
  HostControl()->MountDiskGroup("c1", true);
  EXPECT_THAT(Mounted(), ElementsAre("c1", "s2"));
  HostControl()->UnmountDisk("s2", true);
  MakeUnhealthy("s2");
  const std::string noCapacity = "disk group 'c2' has no healthy capacity device";
  ExpectRefusals({
      {Act(&Host::MountDisk, "s2"), "device 's2' is not healthy"},
      {Act(&Host::MountDiskGroup, "c2", false), "disk group 'c2' has unhealthy disks: s3"},
      {Act(&Host::MountDiskGroup, "c2", true), noCapacity},
      {Act(&Host::RebuildDiskGroup, "c2", "", 2, true, Names{}), noCapacity},
  });
  MakeUnhealthy("c2");
  const std::string noCaching =
      "the caching device 'c2' is not healthy, and its disk group cannot do without it";
  ExpectRefusals({
      {Act(&Host::MountDiskGroup, "c2", false), "disk group 'c2' has unhealthy disks: c2, s3"},
      {Act(&Host::MountDiskGroup, "c2", true), noCaching},
      {Act(&Host::RebuildDiskGroup, "c2", "", 2, true, Names{}), noCaching},
  });
}

TEST_F(DiskGroupTest, RebuildMakesHealthyDisksEmptyAndOfTheNewestFormat) {
  lab::InLab([&](lab::Store& store) {
    for (const char* device : {"c1", "s1", "s2", "s3"}) {
      lab::SetFormatVersion(store, lab::CurrentHost(store), device, 3);
    }
  });
  MakeUnhealthy("s2");
  ExpectRefused(Act(&Host::RebuildDiskGroup, "c1", "", 0, false, Names{}),
                "disk group 'c1' has unhealthy disks: s2");
  EXPECT_THAT(Rebuild("c1", "EvacuateAllData", 1), ElementsAre("s2"));
  for (const auto& [device, version, data] :
       {std::tuple{"c1", 20, 0}, {"s1", 20, 0}, {"s2", 3, 100}, {"s3", 3, 200}}) {
    EXPECT_EQ(Info(device).onDiskFormatVersion, version) << device;
    EXPECT_EQ(DataOn(device), data) << device;
  }
  HostControl()->UnmountDisk("s3", true);
  EXPECT_THAT(Rebuild("c2", "", 0), IsEmpty());
  EXPECT_EQ(DataOn("s3"), 0);
  EXPECT_TRUE(Info("s3").isMounted);
}

}  // namespace
}  // namespace lab_test
