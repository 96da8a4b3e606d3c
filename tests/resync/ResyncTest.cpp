#include "tests/support/RecordingHost.h"

namespace test {
namespace {

void Client(RecordingHost& host) { host.clientMode = true; }

TEST(Resync, IsNotForClients) {
  const std::string set = "resync throttle set --level ";
  const std::string client = "IsClientModeEnabled";
  const std::string throttling =
      "error: Resync throttling is not supported with client mode | none";
  const auto number = [](RecordingHost& host) { host.number = 7; };
  Check({
      {set + "0", nullptr, "true", client + " | SetResyncThrottle 0"},
      {set + "512", nullptr, "true", client + " | SetResyncThrottle 512"},
      {set + "513", nullptr, "usage: option \"--level\" takes 0 to 512, not \"513\"", ""},
      {set + "-1", nullptr, "usage: option \"--level\" takes 0 to 512, not \"-1\"", ""},
      {set + "1", Client, throttling, client},
      {set + "1", Failing("SetResyncThrottle"), "error: no luck | none",
       client + " | SetResyncThrottle 1"},
      {"resync throttle get", number, "ResyncThrottle{Level=7}", client + " | GetResyncThrottle"},
      {"resync throttle get", Client, throttling, client},
      {"resync throttle get", Failing("GetResyncThrottle"), "error: no luck | none",
       client + " | GetResyncThrottle"},
      {"resync bandwidth get", number, "ResyncBandwidth{Rate=7}", client + " | GetResyncBandwidth"},
      {"resync bandwidth get", Client,
       "error: Resync bandwidth is not supported with client mode | none", client},
      {"resync bandwidth get", Failing("GetResyncBandwidth"), "error: no luck | none",
       client + " | GetResyncBandwidth"},
  });
}

}  // namespace
}  // namespace test
