#include "lab/model/Disks.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using EvacuationTest = RowsTest;

/// The data on all devices but those for caching, host by host: "100 - | 25", a minus for what is
/// not in use.
std::string Data() {
  return lab::ReadLab([](lab::Store& store) {
    std::string data;
    for (const lab::Host& host : lab::AllHosts(store)) {
      if (!data.empty()) data += " | ";
      std::string own;
      for (const lab::Device& device : lab::DevicesOf(store, host)) {
        if (device.name[0] == 'c') continue;
        own += (own.empty() ? "" : " ") +
               (device.claim ? std::to_string(device.claim->usedGb) : std::string("-"));
      }
      data += own;
    }
    return data;
  });
}

TEST_F(EvacuationTest, DataMovesToTheOwnHostFirstAndThenToTheOtherDataHostsInTheirOrder) {
  // host2 is of another cluster, host3 joins last.
  MakeHosts("c s400=400 s40=40 / c s100=100 / c s100=100 / c s100=100");
  ASSERT_EQ(Play("1 claim c s400 s40; 2 claim c s100; 3 claim c s100; 4 claim c s100; 1 create A; "
                 "2 create B; 4 join A; 3 join A; 1 data s400 100; 1 data s40 10; 2 data s100 25; "
                 "3 data s100 25; 4 data s100 25"),
            "");
  Expect(Data, R"(
                                                      -> 100 10 | 25 | 25 | 25
1 unclaim s400                                        -> - 10 | 25 | 25 | 25
1 unclaim s400 all / 1 unclaim #s400 all              -> - 40 | 25 | 95 | 25
1 unclaim s40 all / 1 leave A; 1 unclaim s40 all      -> 110 - | 25 | 25 | 25
1 unclaim s40 half                                    -> 105 - | 25 | 25 | 25
1 sick s40; 1 unclaim s40 half                        -> 100 - | 25 | 25 | 25
1 leave A; 1 sick s40; 1 data s400 10; 1 unclaim s40 half -> 10 - | 25 | 25 | 25
1 data s400 50; 1 sick s400; 1 ungroup c half         -> - - | 25 | 30 | 25
1 data s400 50; 1 sick c; 3 data s100 35; 1 ungroup c half -> - - | 25 | 35 | 25
1 ungroup c all                                       -> - - | 25 | 100 | 60
3 sick c; 1 unclaim s400 all / 3 encrypted c missing; 1 unclaim s400 all / 3 wrong c disk; 1 unclaim s400 all -> - 40 | 25 | 25 | 95
3 encrypted s100 missing; 1 unclaim s400 all / 3 wrong s100 disk; 1 unclaim s400 all -> - 40 | 25 | 25 | 95
3 encrypted c loaded; 1 unclaim s400 all              -> - 40 | 25 | 95 | 25
1 emptygroup c half                                   -> 50 5 | 25 | 80 | 25
1 emptygroup c all / 1 rebuild c all 0                -> 0 0 | 25 | 100 | 60
1 rebuild c half 0                                    -> 0 0 | 25 | 80 | 25
1 rebuild c - 0                                       -> 0 0 | 25 | 25 | 25
3 sick s100; 1 unclaim s400 all / 3 unmount s100 force; 1 unclaim s400 all / 3 reboot; 1 unclaim s400 all / 3 leave A; 3 join A witness host1; 1 unclaim s400 all -> - 40 | 25 | 25 | 95
3 type metadata; 1 unclaim s400 all                   -> - 40 | 25 | 25 | 95
1 sick s40; 1 unclaim s400 all / 1 unmount s40 force; 1 unclaim s400 all -> - 10 | 25 | 100 | 50
1 sick s40; 1 rebuild c all 0 force                   -> 0 10 | 25 | 100 | 50
)");
  ExpectRefusals(R"(
1 leave A; 1 unclaim s400 all / 1 reboot; 1 unclaim s400 all -> all needs 100 GB in-groups of the host, and there are 30 GB free; 'korel storage add' brings...
1 leave A; 1 client C; 2 leave B; 2 client C; 1 unclaim s400 all -> all needs 100 GB in-groups of the host, and there are 30 GB free; 'korel storage add' brings...
1 leave A; 1 join A witness host3; 1 unclaim s400 all -> all needs 100 GB in-groups of the cluster, and there are 30 GB free; 'korel storage add' brings...
1 type metadata; 1 unclaim s400 all -> all needs 100 GB in-groups of the cluster, and there are 30 GB free; 'korel storage add' brings...
3 leave A; 4 leave A; 1 ungroup c all -> all needs 110 GB in-groups of the cluster, and there are 0 GB free; 'korel storage add' brings...
1 sick s400; 1 unclaim s400 all -> device 's400' is not healthy, so its 100 GB of data cannot be moved; 'korel storage remove --disk s400 --evacuation-mode noAction' gives the data up
1 sick s400; 1 ungroup c all -> device 's400' is not healthy, so its 100 GB of data cannot be...
1 encrypted s400 missing; 1 unclaim s400 all -> device 's400' lacks its key, which 'autocli lab disk set --encryption on --device s400' loads, so its 100 GB...
1 sick c; 1 unclaim s40 all -> device 's40' has a caching device that is not healthy, so its 10 GB...
1 unmount s40 force; 1 unclaim s40 half -> device 's40' is unmounted, so its 10 GB of data cannot be moved; 'korel storage diskgroup mount --disk s40' mounts it, 'korel storage remove --disk s40...
1 unmount #c; 1 ungroup c half -> device 's400' is unmounted...; 'korel storage diskgroup mount --ssd c' mounts it,...
1 sick s400; 1 unclaim s400 half -> 100 GB of data cannot be read, and the other mounted disks of the disk groups of the cluster hold 60 GB, too little to be copies of it; the evacuation mode noAction gives the data up
1 leave A; 1 sick s40; 1 data s400 9; 1 unclaim s40 half -> 10 GB of data cannot be read, and the other mounted disks of the disk groups of the host hold 9 GB...
)");
}

TEST_F(EvacuationTest, DataOfThePoolGoesToPoolsAndDataOfGroupsToGroups) {
  MakeHosts("c f20=20 f5=5 s100=100 / c f30=30 s50=50");
  ASSERT_EQ(Play("1 create A; 2 join A; 1 claim c s100; 2 claim c s50; 1 pool f20; 2 pool f30; "
                 "1 data f20 18; 1 data s100 40; 2 data f30 15"),
            "");
  Expect(Data, R"(
                                       -> 18 - 40 | 15 0
1 unpool f20 half                      -> - - 40 | 24 0
1 pool f5; 1 unpool f20 all            -> - 5 40 | 28 0
1 ungroup c all / 1 unclaim #c all     -> 18 - - | 15 40
1 sick f20; 2 data f30 18; 1 unpool f20 half -> - - 40 | 18 0
)");
  ExpectRefusals(R"(
1 unpool f20 all                       -> all needs 18 GB in-pool of the cluster, and there are 15 GB free; ...
2 data s50 11; 1 ungroup c all         -> all needs 40 GB in-groups of the cluster, and there are 39 GB free; ...
1 sick f20; 1 unpool f20 half          -> 18 GB of data cannot be read, and... storage pool of the cluster hold 15 GB, ...
)");
}

TEST_F(EvacuationTest, OddAmountsAndRoomToTheLastGigabyte) {
  MakeHosts("c s7=7 s13=13 s3=3 s28=28 s1=1 f9=9");
  ASSERT_EQ(Play("1 claim c s7 s13 s3 s28; 1 data s7 1; 1 data s13 3; 1 data s28 7"), "");
  Expect(Data, R"(
                                                              -> 1 3 0 7 - -
1 claim c s1 f9                                               -> 1 3 0 7 0 0
1 unclaim s13 half                                            -> 3 - 0 7 - -
1 unclaim s7 half                                             -> - 4 0 7 - -
1 unclaim s28 half                                            -> 5 3 0 - - -
1 unclaim s28 all                                             -> 7 4 0 - - -
1 sick s3; 1 unclaim s3 all / 1 unmount s3; 1 unclaim s3 half -> 1 3 - 7 - -
1 unclaim s28; 1 unclaim s13; 1 claim c f9; 1 data f9 2; 1 unclaim s3; 1 unclaim f9 all -> 3 - - - - -
)");
  ExpectRefusals(R"(
1 unclaim s7; 1 unclaim s13; 1 unclaim s28 half         -> half needs 4 GB in-groups of the host, and there are 3 GB free; 'korel storage add' brings...
1 unclaim s7; 1 unclaim s13; 1 emptygroup c half -> half needs 4 GB in-groups of the host, and there are 0 GB free; 'korel storage add' brings...
1 pool f9; 1 ungroup c all -> all needs 11 GB in-groups of the host, and there are 0 GB free; 'korel storage add' brings...
1 pool f9; 1 data f9 2; 1 unpool f9 all -> all needs 2 GB in-pool of the host, and there are 0 GB free; 'korel storagepool add' brings more disks, and the evacuation mode noAction gives the data up
1 pool f9; 1 data f9 1; 1 sick f9; 1 unpool f9 half -> 1 GB of data cannot be read, and the other mounted disks of the storage pool of the host hold 0 GB, ...
)");
}

}  // namespace
}  // namespace lab_test
