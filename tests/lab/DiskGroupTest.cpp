#include "lab/model/Features.h"
#include "lab/model/Lab.h"
#include "tests/lab/DiskSupport.h"

namespace lab_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A host with two groups, c1 of s1 and s2 and c2 of s3, and devices to spare.
class DiskGroupTest : public LabTest {
 protected:
  DiskGroupTest() {
    MakeHosts({{Caching("c1"), Caching("c2"), Spinning("s1", 400), Spinning("s2", 400),
                Spinning("s3", 400), Spinning("s4", 400), Flash("f1", 400)}});
    Claim("c1", {"s1", "s2"});
    Claim("c2", {"s3"});
  }

  static Names Rebuild(const std::string& caching, const std::string& mode, int trim, bool force) {
    Names skipped{"replaced"};
    HostControl()->RebuildDiskGroup(caching, mode, trim, force, skipped);
    return skipped;
  }
};

TEST_F(DiskGroupTest, GroupsAndDisksGoOutOfUseAndComeBack) {
  const auto host = HostControl();
  host->UnmountDisk("s1", true);
  EXPECT_THAT(Mounted(), ElementsAre("c1", "c2", "s2", "s3"));
  host->UnmountDiskGroup("c1", true);
  EXPECT_THAT(Mounted(), ElementsAre("c2", "s3"));
  host->UnmountDiskByUuid(UuidOf("c2"));
  EXPECT_THAT(Mounted(), IsEmpty());
  EXPECT_EQ(DataOn("s1"), 100) << "it stays on the disk";
  host->MountDiskGroup("c1", false);
  EXPECT_THAT(Mounted(), ElementsAre("c1", "s1", "s2")) << "the disk unmounted alone too";
  host->UnmountDiskByUuid(UuidOf("s2"));
  host->MountDiskByUuid(UuidOf("c2"));
  EXPECT_THAT(Mounted(), ElementsAre("c1", "c2", "s1", "s3"));
  host->MountDiskGroup("c1", false);
  host->UnmountDisk("s2", true);
  host->MountDisk("s2");
  host->UnmountDisk("s2", true);
  host->MountDiskByUuid(UuidOf("s2"));
  EXPECT_THAT(Mounted(), ElementsAre("c1", "c2", "s1", "s2", "s3"));
}

TEST_F(DiskGroupTest, MountRefusals) {
  HostControl()->AddStoragePoolDisks({"f1"});
  HostControl()->UnmountDiskGroup("c1", true);
  HostControl()->UnmountDisk("s3", true);
  MakeUnhealthy("s3");
  const auto mount = [](const std::string& device) {
    return [=] { HostControl()->MountDisk(device); };
  };
  const auto mountGroup = [](const std::string& device, bool force) {
    return [=] { HostControl()->MountDiskGroup(device, force); };
  };
  ExpectRefusals({
      {__LINE__, "host1", mount("x"), "the host has no device 'x'"},
      {__LINE__, "host1", mount("s4"), "device 's4' is in no disk group"},
      {__LINE__, "host1", mount("f1"), "device 'f1' is in the storage pool, not in a disk group"},
      {__LINE__, "host1", mount("c1"),
       "device 'c1' is the caching device of a disk group; mount the whole group"},
      {__LINE__, "host1", mount("s1"),
       "device 's1' cannot be mounted alone: disk group 'c1' is unmounted"},
      {__LINE__, "host1", [] { HostControl()->MountDiskByUuid(UuidOf("s1")); },
       "device 's1' cannot be mounted alone: disk group 'c1' is unmounted"},
      {__LINE__, "host1", [] { HostControl()->MountDiskByUuid("x"); }, NotUuid("x")},
      {__LINE__, "host1", mount("s3"), "device 's3' is not healthy"},
      {__LINE__, "host1", mountGroup("s1", false),
       "device 's1' is not the caching device of a disk group"},
      {__LINE__, "host1", mountGroup("c2", false), "disk group 'c2' has unhealthy disks: s3"},
      {__LINE__, "host1", mountGroup("c2", true), "disk group 'c2' has no healthy capacity device"},
      {__LINE__, "host1", [] { Claim("c1", {"s4"}); },
       "disk group 'c1' is unmounted; mount it first"},
  });
  HostControl()->MountDiskGroup("c1", false);
  ExpectRefusals({
      {__LINE__, "host1", mount("s1"), "device 's1' is mounted already"},
      {__LINE__, "host1", mountGroup("c1", false), "disk group 'c1' is mounted already"},
      {__LINE__, "host1", mountGroup("c1", true), "disk group 'c1' is mounted already"},
  });
}

TEST_F(DiskGroupTest, ForcedMountLeavesUnhealthyDisksOut) {
  HostControl()->UnmountDiskGroup("c1", true);
  MakeUnhealthy("s1");
  HostControl()->MountDiskGroup("c1", true);
  EXPECT_THAT(Mounted(), ElementsAre("c1", "c2", "s2", "s3"));
  EXPECT_FALSE(Info("s1").isChecksumOk);
  HostControl()->UnmountDiskGroup("c1", true);
  MakeUnhealthy("c1");
  ExpectRefused([] { HostControl()->MountDiskGroup("c1", false); },
                "disk group 'c1' has unhealthy disks: c1, s1");
  ExpectRefused([] { HostControl()->MountDiskGroup("c1", true); },
                "the caching device 'c1' is not healthy, and its disk group cannot do without it");
}

TEST_F(DiskGroupTest, UnmountRefusals) {
  HostControl()->UnmountDiskGroup("c2", true);
  const auto unmount = [](const std::string& device, bool force) {
    return [=] { HostControl()->UnmountDisk(device, force); };
  };
  const auto withMode = [](const std::string& device, const std::string& mode) {
    return [=] { HostControl()->UnmountDiskGroupWithMode(device, mode); };
  };
  ExpectRefusals({
      {__LINE__, "host1", unmount("s4", true), "device 's4' is in no disk group"},
      {__LINE__, "host1", unmount("c1", true),
       "device 'c1' is the caching device of a disk group; unmount the whole group"},
      {__LINE__, "host1", unmount("s3", true), "device 's3' is unmounted already"},
      {__LINE__, "host1", unmount("s1", false), "device 's1' is in use: it holds 100 GB of data"},
      {__LINE__, "host1", [] { HostControl()->UnmountDiskGroup("c1", false); },
       "disk group 'c1' is in use: it holds 200 GB of data"},
      {__LINE__, "host1", [] { HostControl()->UnmountDiskGroup("c2", true); },
       "disk group 'c2' is unmounted already"},
      {__LINE__, "host1", [] { HostControl()->UnmountDiskByUuid(UuidOf("c2")); },
       "disk group 'c2' is unmounted already"},
      {__LINE__, "host1", withMode("c2", ""), "disk group 'c2' is unmounted already"},
      {__LINE__, "host1", withMode("s1", ""),
       "device 's1' is not the caching device of a disk group"},
      {__LINE__, "host1", withMode("c1", "noAction"),
       "'noAction' is no evacuation mode: NoAction, EnsureObjectAccessibility or EvacuateAllData"},
      {__LINE__, "host1", withMode("c1", "EvacuateAllData"),
       "EvacuateAllData needs 200 GB on other mounted capacity disks of the host, and there are 0 "
       "GB free"},
  });
}

TEST_F(DiskGroupTest, RebuildMakesAllDisksEmptyAndOfTheNewestFormat) {
  for (const char* device : {"c1", "s1", "s3"}) SetFormatVersion(device, 3);
  HostControl()->UnmountDisk("s2", true);
  EXPECT_THAT(Rebuild("c1", "", 0, false), IsEmpty());
  EXPECT_EQ(Info("c1").onDiskFormatVersion, 20);
  EXPECT_EQ(Info("s1").onDiskFormatVersion, 20);
  EXPECT_EQ(Info("s3").onDiskFormatVersion, 3) << "of another group";
  EXPECT_EQ(DataOn("s1") + DataOn("s2"), 0);
  EXPECT_EQ(DataOn("s3"), 100);
  EXPECT_THAT(Mounted(), ElementsAre("c1", "c2", "s1", "s2", "s3"));
  Names skipped;
  HostControl()->RebuildDiskGroupByUuid(UuidOf("c2"), "EvacuateAllData", 2, true, skipped);
  EXPECT_THAT(skipped, IsEmpty());
  EXPECT_EQ(DataOn("s1"), 100);
}

TEST_F(DiskGroupTest, RebuildSkipsUnhealthyDisksOnlyByForce) {
  Claim("c2", {"s4"});
  Claim("c2", {"f1"});
  for (const char* device : {"s3", "s4", "f1"}) SetFormatVersion(device, 4);
  MakeUnhealthy("f1");
  MakeUnhealthy("s3");
  ExpectRefused([] { Rebuild("c2", "", 0, false); }, "disk group 'c2' has unhealthy disks: s3, f1");
  EXPECT_THAT(Rebuild("c2", "EvacuateAllData", 1, true), ElementsAre("s3", "f1"));
  for (const char* device : {"s3", "f1"}) {
    EXPECT_EQ(Info(device).onDiskFormatVersion, 4);
    EXPECT_EQ(DataOn(device), 100);
  }
  EXPECT_EQ(Info("s4").onDiskFormatVersion, 20);
  EXPECT_EQ(DataOn("s4"), 0);
  EXPECT_EQ(DataOn("s1"), 200) << "the data of s4";
}

TEST_F(DiskGroupTest, RebuildRefusals) {
  MakeUnhealthy("s3");
  lab::InLab([](lab::Store& store) { lab::SetFeature(store, "rebuild-trim", false); });
  const auto rebuild = [](const std::string& caching, const std::string& mode, int trim) {
    return [=] { Rebuild(caching, mode, trim, true); };
  };
  Names skipped;
  ExpectRefusals({
      {__LINE__, "host1", rebuild("s1", "", 2),
       "device 's1' is not the caching device of a disk group"},
      {__LINE__, "host1",
       [&] { HostControl()->RebuildDiskGroupByUuid(UuidOf("s1"), "", 2, false, skipped); },
       "device 's1' is not the caching device of a disk group"},
      {__LINE__, "host1", rebuild("c1", "x", 2),
       "'x' is no evacuation mode: NoAction, EnsureObjectAccessibility or EvacuateAllData"},
      {__LINE__, "host1", rebuild("c1", "", 3),
       "there is no trim code 3: 0 metadata only, 1 full disk, 2 none"},
      {__LINE__, "host1", rebuild("c1", "", -1),
       "there is no trim code -1: 0 metadata only, 1 full disk, 2 none"},
      {__LINE__, "host1", rebuild("c1", "", 0), "this host cannot trim disks in a rebuild"},
      {__LINE__, "host1", rebuild("c2", "", 2), "disk group 'c2' has no healthy capacity device"},
      {__LINE__, "host1", rebuild("c1", "EvacuateAllData", 2),
       "EvacuateAllData needs 200 GB on other mounted capacity disks of the host, and there are 0 "
       "GB free"},
  });
  MakeUnhealthy("c1");
  ExpectRefused(rebuild("c1", "", 2),
                "the caching device 'c1' is not healthy, and its disk group cannot do without it");
}

}  // namespace
}  // namespace lab_test
