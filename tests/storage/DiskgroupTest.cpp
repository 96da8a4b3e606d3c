#include "tests/support/RecordingHost.h"

namespace test {

TEST(Diskgroup, MountsAndUnmountsByTarget) {
  const Names names = {{"$mount", "storage diskgroup mount"},
                       {"$unmount", "storage diskgroup unmount"}};
  Check({}, names, R"(
$mount -s one -> true <- MountDiskGroup one false
$mount -u one -> true <- MountDiskByUuid one
$mount -d '' -> true <- MountDisk ""
$mount -> error: Either --ssd, --disk or --uuid is required | false
$mount -s one -u two / $unmount -d one -u two -m NoAction -> error: Specify only one of --ssd, --disk or --uuid. | none
$unmount -s one -> true <- UnmountDiskGroup one true
$unmount -s one -m NoAction -> true <- UnmountDiskGroupWithMode one NoAction
$unmount -d one -> true <- UnmountDisk one true
$unmount -u one -> true <- UnmountDiskByUuid one
$unmount -u one -m NoAction -> error: Evacuation mode -m is only valid with --ssd option. | none
$unmount -s one -m noAction -> usage: option "--evacuation-mode" takes one of "NoAction",
  "EnsureObjectAccessibility", "EvacuateAllData", not "noAction", did you mean "NoAction"?
)");
}

TEST(Diskgroup, RebuildsWithTrimAndSkippedDisks) {
  const Hosts hosts = {
      {"skipping a", [](RecordingHost& host) { host.skippedDisks.push_back("a"); }},
      {"skipping b", [](RecordingHost& host) { host.skippedDisks.push_back("b"); }},
      {"no trim", [](RecordingHost& host) { host.trimFeature = false; }},
  };
  // The feature is asked for the declaration of "trim", and for its value.
  const Names names = {{"$rebuild", "storage diskgroup rebuild"},
                       {"$asked", "IsKorelRebuildTrimFssEnabled"}};
  Check(hosts, names, R"(
$rebuild -s one -> Rebuild succeeded. <- $asked | $asked | RebuildDiskGroup one "" 0 false
! error: no luck | none
[skipping a, skipping b] $rebuild -s one -m evacuateAllData -t fullDisk --force -> Rebuild succeeded. Ignored the
  unhealthy disk: a b <- $asked | $asked | RebuildDiskGroup one EvacuateAllData 1 true
$rebuild -u one -t noTrim --force -> Rebuild succeeded. <- $asked | $asked | RebuildDiskGroupByUuid one "" 2 true
$rebuild -u one -t metaDataOnly -> Rebuild succeeded. <- $asked | $asked | RebuildDiskGroupByUuid one "" 0 false
[no trim] $rebuild -s one -> Rebuild succeeded. <- $asked | $asked | RebuildDiskGroup one "" 2 false
[no trim] $rebuild -s one -t fullDisk / [$asked fails] $rebuild -s one -t fullDisk -> usage: unknown option "-t" <- $asked
[$asked fails] $rebuild -s one -> error: no luck | none <- $asked | $asked
[$asked fails once] $rebuild -s one -> Rebuild succeeded. <- $asked | $asked | RebuildDiskGroup one "" 0 false
$rebuild / $rebuild -s one -u two -> error: Specify only one of --ssd or --uuid. | none <- $asked
)");
}

TEST(Tags, ArePutOnAndTakenOff) {
  Check(R"(
storage tag add -t capacityFlash -d one -> true <- AddCapacityFlashTag one
storage tag add -t korelDirect -d one -> true <- AddKorelDirectTag one
storage tag remove -t korelDirect -d one -> true <- RemoveKorelDirectTag one
storage tag remove -t capacityFlash -d one -> true <- RemoveCapacityFlashTag one
)");
}

TEST(AutoMode, IsAlwaysOff) {
  Check(R"(
storage automode get -> AutoMode{Enabled=false}
storage automode set --enabled false -> true
storage automode set --enabled true -> error: Korel storage auto claim mode setting is not
  supported. Since Korel 7.0 U1, auto claim modeis always disabled. | true
)");
}

}  // namespace test
