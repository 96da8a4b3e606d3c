#include "tests/support/RecordingHost.h"

namespace test {
namespace {

const std::string kA = "aaaaaaaa-0000-0000-0000-000000000001";
const std::string kB = "bbbbbbbb-0000-0000-0000-000000000002";

TEST(StoragePool, AddsAndRemoves) {
  const std::string onlyOne = "error: Specify only one of --disk or --uuid. | none";
  Check({
      {"storagepool add -d one -d two", nullptr, "true", "AddStoragePoolDisks [one,two]"},
      {"storagepool add -d one", Failing("AddStoragePoolDisks"),
       "error: Unable to add storage pool disk: no luck | none", "AddStoragePoolDisks [one]"},
      {"storagepool remove -d one", nullptr, "true", "RemoveStoragePoolDisk one \"\""},
      {"storagepool remove -u one -m evacuateAllData", nullptr, "true",
       "RemoveStoragePoolDiskByUuid one EvacuateAllData"},
      {"storagepool remove", nullptr, onlyOne, ""},
      {"storagepool remove -d one -u two", nullptr, onlyOne, ""},
      {"storagepool remove -d one -m all", nullptr,
       "error: Expected a single value from the set [noAction, ensureObjectAccessibility, "
       "evacuateAllData] got 'all' | none",
       ""},
      {"storagepool remove -d one", Failing("RemoveStoragePoolDisk"),
       "error: Unable to remove storage pool disk: no luck | none",
       "RemoveStoragePoolDisk one \"\""},
  });
}

TEST(StoragePool, ListsItsOwnDisks) {
  const auto row = [](const std::string& name, const std::string& uuid) {
    return "KorelStoragePoolList{Device=" + name + ", KOREL UUID=" + uuid +
           ", Is SSD=true, Used by this host=false, In HXDS=false, On-disk format version=0, "
           "Capacity=7, Is Mounted=false, Creation Time=}";
  };
  const auto prepare = [](RecordingHost& host) {
    host.disks = {{"x", kA}, {"y", kB}, {"z", "cccccccc-0000-0000-0000-000000000003"}};
    host.poolDisks = {"x", "y"};
  };
  const std::string list = "storagepool list";
  const std::string x = "IsStoragePoolDisk x | GetKorelStoragePoolDiskInfo " + kA + " true";
  const std::string y = "IsStoragePoolDisk y | GetKorelStoragePoolDiskInfo " + kB + " true";
  const std::string disks = "GetKorelDisks 0";
  Check({
      {list, nullptr, "[]", disks},
      {list, prepare, "[" + row("x", kA) + ", " + row("y", kB) + "]",
       disks + " | " + x + " | " + y + " | IsStoragePoolDisk z"},
      {list + " -u " + kB, prepare, "[" + row("y", kB) + "]", disks + " | " + y},
      {list + " -d z", prepare, "error: Unable to find storage pool disk with name: z | none",
       disks + " | IsStoragePoolDisk z"},
      {list + " -u " + kA, nullptr,
       "error: Unable to find storage pool disk with uuid: " + kA + " | none", disks},
      {list + " -d x -u y", nullptr,
       "error: Only one of --device or --uuid can be specified. | none", ""},
      {list, Failing("GetKorelDisks"), "error: Unable to list storage pool disks: no luck | none",
       disks},
  });
}

}  // namespace
}  // namespace test
