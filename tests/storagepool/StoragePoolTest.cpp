#include "tests/support/RecordingHost.h"

namespace test {

TEST(StoragePool, AddsAndRemoves) {
  Check(R"(
storagepool add -d one -d two -> true <- AddStoragePoolDisks [one,two]
storagepool remove -d one -> true <- RemoveStoragePoolDisk one ""
storagepool remove -u one -m evacuateAllData -> true <- RemoveStoragePoolDiskByUuid one EvacuateAllData
storagepool remove / storagepool remove -d one -u two -> error: Specify only one of --disk or --uuid. | none
)");
}

TEST(StoragePool, ListsItsOwnDisks) {
  const auto two = [](RecordingHost& host) {
    host.disks = {{"x", "aaaaaaaa-0000-0000-0000-000000000001"},
                  {"y", "bbbbbbbb-0000-0000-0000-000000000002"},
                  {"z", "cccccccc-0000-0000-0000-000000000003"}};
    host.poolDisks = {"x", "y"};
    host.usedPoolDisk = "x";
  };
  const Names names = {
      {"$pool", "KorelStoragePoolList{Device="},
      {"$rest",
       "Is SSD=true, Used by this host=false, In HXDS=-, On-disk format version=-, "
       "Capacity=7, Is Mounted=-, Creation Time=-}"},
      {"$used",
       "Is SSD=true, Used by this host=true, In HXDS=false, On-disk format version=20, "
       "Capacity=7, Is Mounted=false, Creation Time=now}"},
      {"$x", "IsStoragePoolDisk x | GetKorelStoragePoolDiskInfo $A true"},
      {"$y", "IsStoragePoolDisk y | GetKorelStoragePoolDiskInfo $B true"}};
  Check({{"two", two}}, names, R"(
storagepool list -> [] <- GetKorelDisks 0
[two] storagepool list -> [$poolx, KOREL UUID=$A, $used, $pooly, KOREL UUID=$B, $rest] <- GetKorelDisks 0 | $x | $y | IsStoragePoolDisk z
[two] storagepool list -u $B -> [$pooly, KOREL UUID=$B, $rest] <- GetKorelDisks 0 | $y
[two] storagepool list -d z -> error: Unable to find storage pool disk with name: z | none <- GetKorelDisks 0 | IsStoragePoolDisk z
storagepool list -d x -u y -> error: Only one of --device or --uuid can be specified. | none
)");
}

}  // namespace test
