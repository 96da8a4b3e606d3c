#include "lab/model/Lab.h"
#include "tests/lab/DiskSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::ElementsAre;
using testing::IsEmpty;

using DiskTest = DiskLabTest;

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
  EXPECT_FALSE(KorelUtil::IsStoragePoolDisk("f1") || KorelUtil::IsStoragePoolDisk("c3"));
  host->AddCapacityFlashTag("c2");
  Claim("c3", {"s1", "f1", "c2"});
}

TEST_F(DiskTest, Refusals) {
  ExpectRefusals({
      {Act(&Host::AddDisks, "c1", Names{"f2", "x"}), "the host has no device 'x'"},
      {Act(&Host::AddDisks, "s4", Names{"f2"}), "device 's4' is not flash, as caching needs"},
      {Act(&Host::AddDisks, "c1", Names{"c3"}),
       "device 'c3' is flash without the capacity tag, as capacity needs"},
      {Act(&Host::AddDisks, "c2", Names{"s1"}), "device 's1' is in use in disk group 'c1'"},
      {Act(&Host::AddDisks, "c1", Names{"f1"}), "device 'f1' is in use in the storage pool"},
      {Act(&Host::RemoveDisk, "f2", ""), "device 'f2' is in no disk group"},
      {Act(&Host::RemoveDisk, "c1", ""),
       "device 'c1' is the caching device of a disk group; remove the whole group"},
      {Act(&Host::RemoveDisk, "s3", ""),
       "device 's3' is the last capacity device of disk group 'c2'; remove the whole group"},
      {Act(&Host::RemoveDisk, "s1", "noAction"),
       "'noAction' is no evacuation mode: NoAction, EnsureObjectAccessibility or EvacuateAllData"},
      {Act(&Host::RemoveStoragePoolDisk, "f2", ""), "device 'f2' is not in the storage pool"},
      {Act(&Host::RemoveStoragePoolDisk, "s1", ""),
       "device 's1' is in disk group 'c1', not in the storage pool"},
      {Act(&Host::RemoveDisk, "f1", ""), "device 'f1' is in the storage pool, not in a disk group"},
      {Act(&Host::AddDisks, "f2", Names{"s4"}),
       "device 'f2' is tagged for capacity and cannot be used for caching"},
      {Act(&Host::AddStoragePoolDisks, Names{"s4"}),
       "device 's4' is not flash, as the storage pool needs"},
      {Act(&Host::AddCapacityFlashTag, "s4"),
       "device 's4' is not flash, as the tag capacityFlash needs"},
      {Act(&Host::AddCapacityFlashTag, "f2"), "device 'f2' is tagged capacityFlash already"},
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

}  // namespace
}  // namespace lab_test
