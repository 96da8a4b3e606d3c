#include "tests/support/RecordingHost.h"

namespace test {

TEST(Resync, IsNotForClients) {
  const auto seven = [](RecordingHost& host) { host.number = 7; };
  Check({{"7", seven}}, {{"$throttle", "resync throttle"}, {"$asked", "IsClientModeEnabled"}}, R"(
$throttle set --level 0 -> true <- $asked | SetResyncThrottle 0
$throttle set --level 512 -> true <- $asked | SetResyncThrottle 512
! error: no luck | none
$throttle set --level 513 -> usage: option "--level" takes 0 to 512, not "513"
trace set --size 4096 -> usage: option "--size" takes 1 to 4095, not "4096"
[client] $throttle set --level 1 / [client] $throttle get -> error: Resync throttling is not supported with client mode | none <- $asked
[7] $throttle get -> ResyncThrottle{Level=7} <- $asked | GetResyncThrottle
! error: no luck | none
[7] resync bandwidth get -> ResyncBandwidth{Rate=7} <- $asked | GetResyncBandwidth
! error: no luck | none
)");
}

}  // namespace test
