#include "tests/support/RecordingHost.h"

namespace test {
namespace {

TEST(Diskgroup, MountsAndUnmountsByTarget) {
  const std::string mount = "storage diskgroup mount";
  const std::string unmount = "storage diskgroup unmount";
  const std::string onlyOne = "error: Specify only one of --ssd, --disk or --uuid. | none";
  Check({
      {mount + " -s one", nullptr, "true", "MountDiskGroup one false"},
      {mount + " -u one", nullptr, "true", "MountDiskByUuid one"},
      {mount + " -d ''", nullptr, "true", "MountDisk \"\""},
      {mount, nullptr, "error: Either --ssd, --disk or --uuid is required | false", ""},
      {mount + " -s one -u two", nullptr, onlyOne, ""},
      {mount + " -d one", Failing("MountDisk"), "error: Unable to mount: no luck | none",
       "MountDisk one"},
      {unmount + " -s one", nullptr, "true", "UnmountDiskGroup one true"},
      {unmount + " -s one -m NoAction", nullptr, "true", "UnmountDiskGroupWithMode one NoAction"},
      {unmount + " -d one", nullptr, "true", "UnmountDisk one true"},
      {unmount + " -u one", nullptr, "true", "UnmountDiskByUuid one"},
      {unmount, nullptr, "error: Need one of --disk, --ssd or --uuid. | none", ""},
      {unmount + " -d one -u two -m NoAction", nullptr, onlyOne, ""},
      {unmount + " -u one -m NoAction", nullptr,
       "error: Evacuation mode -m is only valid with --ssd option. | none", ""},
      {unmount + " -s one -m noAction", nullptr,
       "usage: option \"--evacuation-mode\" takes one of \"NoAction\", "
       "\"EnsureObjectAccessibility\", \"EvacuateAllData\", not \"noAction\", did you mean "
       "\"NoAction\"?",
       ""},
      {unmount + " -s one", Failing("UnmountDiskGroup"), "error: Unable to unmount: no luck | none",
       "UnmountDiskGroup one true"},
  });
}

TEST(Diskgroup, RebuildsWithTrimAndSkippedDisks) {
  const std::string rebuild = "storage diskgroup rebuild";
  // Once for the declaration of "trim", once for its value.
  const std::string feature = "IsKorelRebuildTrimFssEnabled";
  const std::string onlyOne = "error: Specify only one of --ssd or --uuid. | none";
  const auto calls = [&](const std::string& call) {
    return feature + " | " + feature + " | " + call;
  };
  const auto skipping = [](RecordingHost& host) { host.skippedDisks = {"a", "b"}; };
  const auto noTrim = [](RecordingHost& host) { host.trimFeature = false; };
  Check({
      {rebuild + " -s one", nullptr, "Rebuild succeeded.",
       calls("RebuildDiskGroup one \"\" 0 false")},
      {rebuild + " -s one -m evacuateAllData -t fullDisk --force", skipping,
       "Rebuild succeeded. Ignored the unhealthy disk: a b",
       calls("RebuildDiskGroup one EvacuateAllData 1 true")},
      {rebuild + " -u one -t noTrim --force", nullptr, "Rebuild succeeded.",
       calls("RebuildDiskGroupByUuid one \"\" 2 true")},
      {rebuild + " -u one -t metaDataOnly", nullptr, "Rebuild succeeded.",
       calls("RebuildDiskGroupByUuid one \"\" 0 false")},
      {rebuild + " -s one", noTrim, "Rebuild succeeded.",
       calls("RebuildDiskGroup one \"\" 2 false")},
      {rebuild + " -s one -t fullDisk", noTrim, "usage: unknown option \"-t\"", feature},
      {rebuild, nullptr, onlyOne, feature},
      {rebuild + " -s one -u two", nullptr, onlyOne, feature},
      {rebuild + " -s one", Failing("RebuildDiskGroup"), "error: no luck | none",
       calls("RebuildDiskGroup one \"\" 0 false")},
  });
}

TEST(Tags, ArePutOnAndTakenOff) {
  Check({
      {"storage tag add -t capacityFlash -d one", nullptr, "true", "AddCapacityFlashTag one"},
      {"storage tag add -t korelDirect -d one", Failing("AddKorelDirectTag"),
       "error: Unable to add tag to disk: no luck | none", "AddKorelDirectTag one"},
      {"storage tag remove -t korelDirect -d one", nullptr, "true", "RemoveKorelDirectTag one"},
      {"storage tag remove -t capacityFlash -d one", Failing("RemoveCapacityFlashTag"),
       "error: Unable to remove tag for disk: no luck | none", "RemoveCapacityFlashTag one"},
  });
}

TEST(AutoMode, IsAlwaysOff) {
  Check({
      {"storage automode get", nullptr, "AutoMode{Enabled=false}", ""},
      {"storage automode set --enabled false", nullptr, "true", ""},
      {"storage automode set --enabled true", nullptr,
       "error: Korel storage auto claim mode setting is not supported. Since Korel 7.0 U1, auto "
       "claim "
       "modeis always disabled. | true",
       ""},
  });
}

}  // namespace
}  // namespace test
