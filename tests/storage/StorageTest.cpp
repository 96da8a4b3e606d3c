#include "korel/storage/Commands.h"
#include "tests/support/RecordingHost.h"

namespace test {
namespace {

const std::string kA = "aaaaaaaa-0000-0000-0000-000000000001";
const std::string kB = "bbbbbbbb-0000-0000-0000-000000000002";

TEST(Storage, Adds) {
  Check({
      {"storage add -s ssd -d one -d one -d ''", nullptr, "true", "AddDisks ssd [one,one,]"},
      {"storage add -s ssd -d one", Failing("AddDisks"),
       "error: Unable to add device: no luck | none", "AddDisks ssd [one]"},
  });
}

TEST(Storage, RemovesByTargetInOrder) {
  const std::string atMostOne =
      "error: At most one of --disk or --ssd or --uuid can be specified. | none";
  const auto notAMode = [](const std::string& got) {
    return "error: Expected a single value from the set [noAction, ensureObjectAccessibility, "
           "evacuateAllData] got '" +
           got + "' | none";
  };
  Check({
      {"storage remove -d one", nullptr, "true", "RemoveDisk one \"\""},
      {"storage remove -s one -m noAction", nullptr, "true", "RemoveDiskGroup one NoAction"},
      {"storage remove -u one -m EvacuateAllData", nullptr, "true",
       "RemoveDiskByUuid one EvacuateAllData"},
      {"storage remove -d '' -m ensureObjectAccessibility", nullptr, "true",
       "RemoveDisk \"\" EnsureObjectAccessibility"},
      {"storage remove -d one -u two -m bad", nullptr, atMostOne, ""},
      {"storage remove -m noaction", nullptr, notAMode("noaction"), ""},
      {"storage remove -d one -m ''", nullptr, notAMode(""), ""},
      {"storage remove -m evacuateAllData", nullptr,
       "error: No disk provided, one of --disk or --ssd or --uuid needs to be specified. | none",
       ""},
      {"storage remove -d one", Failing("RemoveDisk"),
       "error: Unable to remove device: no luck | none", "RemoveDisk one \"\""},
  });
}

/// The fields that tell disks apart; the rest is the same for every disk of these tests.
std::string Row(const std::string& name, const std::string& uuid, const char* dedup = "false") {
  return "KorelStorageList{Device=" + name + ", Display Name=" + name +
         ", Is SSD=true, KOREL UUID=" + uuid +
         ", KOREL Disk Group UUID=g, KOREL Disk Group Name=gn, Used by this host=false, In "
         "HXDS=true, On-disk format version=2.5, Deduplication=" +
         dedup +
         ", Compression=true, "
         "Checksum=c, Checksum OK=false, Is Capacity Tier=true, Encryption Metadata Checksum "
         "OK=true, Encryption=false, DiskKeyLoaded=true, Is Mounted=false, Creation Time=then}";
}

void TwoDisks(RecordingHost& host) {
  host.disks = {{"x", kB}, {"y", kA}, {"free", "cccccccc-0000-0000-0000-000000000003"}};
  host.configuredDisks = {kB, kA, kB};
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
  const std::string none = "error: Unable to find device with ";
  std::string upper = kB;
  for (char& c : upper) c = static_cast<char>(std::toupper(c));
  const std::string free = "cccccccc-0000-0000-0000-000000000003";
  const std::string asked = "GetKorelDisks 0 | ListDiskUuids";
  const auto deduplicated = [](RecordingHost& host) {
    TwoDisks(host);
    host.diskInfo.dataEfficiencyMode = 1;
  };
  Check({
      {"storage list", nullptr, "[]", asked},
      {"storage list", TwoDisks, "[" + Row("y", kA) + ", " + Row("x", kB) + "]",
       asked + " | GetDiskInfo " + kA + " | GetDiskInfo " + kB},
      {"storage list -d free", deduplicated, "[" + Row("free", free, "true") + "]",
       asked + " | GetDiskInfo " + free},
      {"storage list -u " + upper, TwoDisks, "[" + Row("x", kB) + "]",
       asked + " | GetDiskInfo " + kB},
      {"storage list -d X", TwoDisks, none + "name: X | none", asked},
      {"storage list -u " + kA, nullptr, none + "uuid: " + kA + " | none", asked},
      {"storage list -d x -u y", TwoDisks,
       "error: Only one of --device or --uuid can be specified. | none", ""},
      {"storage list -u y", TwoDisks,
       "error: Unable to list devices: 'y' is not a UUID of the form "
       "\"nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn\" | none",
       "GetKorelDisks 0"},
      {"storage list", Failing("GetDiskInfo", TwoDisks),
       "error: Unable to list devices: no luck | none", asked + " | GetDiskInfo " + kA},
  });
}

TEST(Storage, KnowsFormatVersions) {
  for (const auto& [version, text] : std::map<int, std::string>{
           {-1, "-1"}, {0, "1"}, {1, "1"}, {2, "2"}, {3, "2.5"}, {4, "3"}, {5, "5"}}) {
    EXPECT_EQ(OstrelCli::KorelNamespace::StorageList::MarshalVersion(version)->GetValue(), text);
  }
}

}  // namespace
}  // namespace test
