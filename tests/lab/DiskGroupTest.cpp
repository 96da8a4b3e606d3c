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
  host->UnmountDiskGroupWithMode("c2", "NoAction");
  EXPECT_THAT(Mounted(), ElementsAre("c1", "s1", "s2"));
}

TEST_F(DiskGroupTest, Refusals) {
  HostControl()->UnmountDiskGroup("c2", true);
  ExpectRefusals({
      {Act(&Host::MountDisk, "c1"),
       "device 'c1' is the caching device of a disk group; mount the whole group"},
      {Act(&Host::MountDisk, "s3"),
       "device 's3' cannot be mounted alone: disk group 'c2' is unmounted"},
      {Act(&Host::MountDiskGroup, "s1", false),
       "device 's1' is not the caching device of a disk group"},
      {Act(&Host::MountDiskGroup, "c1", true), "disk group 'c1' is mounted already"},
      {Act(&Host::UnmountDiskGroup, "c2", true), "disk group 'c2' is unmounted already"},
      {Act(&Host::AddDisks, "c2", Names{"s4"}), "disk group 'c2' is unmounted; mount it first"},
      {Act(&Host::UnmountDisk, "s1", false), "device 's1' is in use: it holds 100 GB of data"},
      {Act(&Host::RebuildDiskGroup, "c1", "", 3, true, Names{}),
       "there is no trim code 3: 0 metadata only, 1 full disk, 2 none"},
  });
}

TEST_F(DiskGroupTest, UnhealthyDisksAreLeftOutOnlyByForce) {
  for (const char* device : {"s1", "s3"}) MakeUnhealthy(device);
  EXPECT_FALSE(Info("s1").isChecksumOk);
  for (const char* group : {"c1", "c2"}) HostControl()->UnmountDiskGroup(group, true);
  HostControl()->MountDiskGroup("c1", true);
  EXPECT_THAT(Mounted(), ElementsAre("c1", "s2"));
  Names skipped;
  HostControl()->RebuildDiskGroupByUuid(UuidOf("c1"), "", 1, true, skipped);
  EXPECT_THAT(skipped, ElementsAre("s1"));
  EXPECT_EQ(DataOn("s2"), 0);
  EXPECT_EQ(DataOn("s1"), 100);
  ExpectRefusals({
      {Act(&Host::RebuildDiskGroup, "c1", "", 1, false, Names{}),
       "disk group 'c1' has unhealthy disks: s1"},
      {Act(&Host::MountDiskGroup, "c2", false), "disk group 'c2' has unhealthy disks: s3"},
      {Act(&Host::MountDiskGroup, "c2", true), "disk group 'c2' has no healthy capacity device"},
  });
  MakeUnhealthy("c2");
  ExpectRefused(Act(&Host::MountDiskGroup, "c2", true),
                "the caching device 'c2' is not healthy, and its disk group cannot do without it");
}

TEST_F(DiskGroupTest, AGroupThatIsNotThereIsNoOperationsEnd) {
  Sql("UPDATE claims SET cachingDevice = 999 WHERE device <> cachingDevice");
  const std::string problem = "device 's1' is in a disk group that the host does not have";
  ExpectRefusals({{Act(&Host::UnmountDisk, "s1", true), problem},
                  {Act(&Host::RemoveStoragePoolDisk, "s1", "NoAction"), problem}});
}

}  // namespace
}  // namespace lab_test
