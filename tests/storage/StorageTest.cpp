#include "korel/storage/Commands.h"
#include "tests/support/RecordingHost.h"

namespace test {
namespace {

TEST(Storage, AddsAndRemovesByTargetInOrder) {
  const Names names = {
      {"$not a mode",
       "Expected a single value from the set [noAction, ensureObjectAccessibility, "
       "evacuateAllData]"}};
  Check({}, names, R"(
storage add -s ssd -d one -d one -d '' -> true <- AddDisks ssd [one,one,]
storage remove -d one -> true <- RemoveDisk one ""
storage remove -s one -m noAction -> true <- RemoveDiskGroup one NoAction
storage remove -u one -m EvacuateAllData -> true <- RemoveDiskByUuid one EvacuateAllData
storage remove -d '' -m ensureObjectAccessibility -> true <- RemoveDisk "" EnsureObjectAccessibility
storage remove -d one -u two -m bad -> error: At most one of --disk or --ssd or --uuid can be specified. | none
storage remove -m noaction -> error: $not a mode got 'noaction' | none
storage remove -d one -m '' -> error: $not a mode got '' | none
)");
}

void HaveTwoDisks(RecordingHost& host) {
  const std::string a = "aaaaaaaa-0000-0000-0000-000000000001";
  const std::string b = "bbbbbbbb-0000-0000-0000-000000000002";
  host.disks = {{"x", b}, {"y", a}, {"free", "cccccccc-0000-0000-0000-000000000003"}};
  host.configuredDisks = {b, a, b};
  auto& info = host.diskInfo;
  info.onDiskFormatVersion = 3;
  info.dataEfficiencyMode = 2;
  info.isSsd = info.isInHxds = info.isEncryptionMetadataChecksumOk = true;
  info.isCapacityTier = info.isDiskKeyLoaded = true;
  info.diskGroupUuid = "g";
  info.diskGroupName = "gn";
  info.checksum = "c";
  info.creationTime = "then";
}

TEST(Storage, ListsInUuidOrder) {
  const auto record = [](const std::string& name, const std::string& uuid,
                         const std::string& dedup = "false") {
    return "KorelStorageList{Device=" + name + ", Display Name=" + name +
           ", Is SSD=true, KOREL UUID=" + uuid +
           ", KOREL Disk Group UUID=g, KOREL Disk Group Name=gn, Used by this host=false, "
           "In HXDS=true, On-disk format version=2.5, Deduplication=" +
           dedup +
           ", Compression=true, "
           "Checksum=c, Checksum OK=false, Is Capacity Tier=true, Encryption Metadata Checksum "
           "OK=true, Encryption=false, DiskKeyLoaded=true, Is Mounted=false, Creation Time=then}";
  };
  const Names names = {{"$x", record("x", "$B")},
                       {"$y", record("y", "$A")},
                       {"$free", record("free", "$C", "true")},
                       {"$asked", "GetKorelDisks 0 | ListDiskUuids"}};
  const auto deduplicate = [](RecordingHost& host) { host.diskInfo.dataEfficiencyMode = 1; };
  Check({{"two", HaveTwoDisks}, {"deduplicated", deduplicate}}, names, R"(
storage list -> [] <- $asked
[two] storage list -> [$y, $x] <- $asked | GetDiskInfo $A | GetDiskInfo $B
[two, deduplicated] storage list -d free -> [$free] <- $asked | GetDiskInfo $C
[two] storage list -u BBBBBBBB-0000-0000-0000-000000000002 -> [$x] <- $asked | GetDiskInfo $B
[two] storage list -d X -> error: Unable to find device with name: X | none <- $asked
[two] storage list -u y -> error: Unable to list devices: 'y' is not a UUID of the form "nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn" | none <- GetKorelDisks 0
)");
}

TEST(Storage, KnowsFormatVersions) {
  for (const auto& [version, text] : std::map<int, std::string>{
           {-1, "-1"}, {0, "1"}, {1, "1"}, {2, "2"}, {3, "2.5"}, {4, "3"}, {5, "5"}}) {
    EXPECT_EQ(OstrelCli::KorelNamespace::StorageList::MarshalVersion(version)->GetValue(), text);
  }
}

}  // namespace
}  // namespace test
