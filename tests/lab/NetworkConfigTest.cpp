#include "tests/lab/Support.h"

namespace lab_test {
namespace {

class NetworkConfigTest : public RowsTest {
 protected:
  NetworkConfigTest() { AddHostsUpTo(2); }
};

/// What is active on a host: interfaces with the first letters of the traffic they carry.
std::string Active(const std::string& number) {
  const auto host = At("host" + number);
  std::string active;
  for (const auto& config : host->GetHsknicConfigs()) {
    const std::string& name = config->GetHsknicName();
    EXPECT_EQ(config->korelTraffic, host->IsHsknicConfigured(name, "korel"));
    EXPECT_EQ(config->witnessTraffic, host->IsHsknicConfigured(name, "witness"));
    active += (active.empty() ? "" : " ") + name + (config->korelTraffic ? "k" : "") +
              (config->witnessTraffic ? "w" : "");
  }
  return active;
}

TEST_F(NetworkConfigTest, WhatIsSetRemovedClearedAndRestored) {
  Expect([] { return Active("1") + "|" + Active("2"); }, R"(
                                                                 -> |
1 interface hsk0 korel; 1 clearnet; 1 uninterface hsk0 korel force; 1 restorenet / 1 uninterface hsk0 korel force; 1 uninterface nic9 witness force -> |
1 interface hsk2 witness; 1 interface hsk0 korel; 2 interface hsk1 korel+witness -> hsk0k hsk2w|hsk1kw
1 interface hsk1 korel; 1 interface hsk1 witness / 1 interface hsk1 korel+witness; 1 uninterface hsk1 korel -> hsk1w|
1 interface hsk1 korel+witness; 1 uninterface hsk1 witness; 1 restorenet / 1 interface hsk0 korel; 1 clearnet; 1 interface hsk1 korel -> hsk1k|
1 interface hsk0 korel; 1 interface hsk1 korel; 1 uninterface hsk1 korel; 1 restorenet / 1 interface hsk0 korel; 1 uninterface hsk1 witness; 1 uninterface hsk0 witness -> hsk0k|
1 interface hsk0 korel; 1 clearnet; 1 uninterface hsk0 witness; 1 restorenet -> hsk0k|
1 interface hsk0 korel; 2 interface hsk0 korel; 1 uninterface hsk0 korel; 1 restorenet / 1 interface hsk0 korel; 2 interface hsk0 korel; 1 clearnet; 2 restorenet -> |hsk0k
1 interface hsk0 korel; 1 clearnet; 1 interface hsk1 korel; 1 restorenet -> hsk0k hsk1k|
)");
}

TEST_F(NetworkConfigTest, WhatReplacesAPersistedRecordSaysSo) {
  const auto play = [&](const std::string& script, const std::string& expected) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(Play(script), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), expected) << script;
  };
  play("1 interface hsk0 korel; 1 interface hsk0 korel ttl=7; 1 clearnet; 1 interface hsk1 korel",
       "");
  play("1 interface hsk0 korel",
       "note: this replaces the persisted configuration of interface hsk0\n");
  play("1 interface hsk0 korel", "");
}

TEST_F(NetworkConfigTest, NumbersAndGroupsAtTheirEdges) {
  const auto shown = [] {
    const auto config = std::move(At("host1")->GetHsknicConfigs().at(0));
    std::string text;
    for (const auto number : {config->GetAgentMulticastPort(), config->GetPrimaryMulticastPort(),
                              config->GetHostUnicastPort(), config->GetMulticastTTL()}) {
      text += std::to_string(number) + " ";
    }
    return text + config->GetAgentMulticastGroup().text + " " +
           config->GetAgentV6MulticastGroup().text + " " + config->GetPrimaryMulticastGroup().text +
           " " + config->GetPrimaryV6MulticastGroup().text;
  };
  Expect(shown, R"(
1 interface hsk1 korel -> 23451 12345 12321 5 224.2.3.4 ff19::2:3:4 224.1.2.3 ff19::1:2:3
1 interface hsk1 korel ap=1 mp=65535 up=1 ttl=1 -> 1 65535 1 1 224.2.3.4 ff19::2:3:4...
1 interface hsk1 korel ap=65535 mp=1 up=65535 ttl=255 -> 65535 1 65535 255 224.2.3.4 ff19::2:3:4...
1 interface hsk1 korel a4=239.255.255.255 -> 23451 12345 12321 5 239.255.255.255 ff19::2:3:4...
1 interface hsk1 korel m4=224.0.0.0 -> 23451 12345 12321 5 224.2.3.4 ff19::2:3:4 224.0.0.0 ff19::1:2:3
1 interface hsk1 korel a6=FF00:0::0 -> 23451 12345 12321 5 224.2.3.4 ff00:: 224.1.2.3 ff19::1:2:3
1 interface hsk1 korel; 1 interface hsk1 korel ttl=7; 1 reboot; 1 restorenet -> 23451 12345 12321 7...
)");
  ExpectRefusals(R"(
1 interface hsk1 korel ap=0 / 1 interface hsk1 korel ap=65536 -> the agent... 1 to 65535...
1 interface hsk1 korel mp=0 / 1 interface hsk1 korel mp=65536 -> the master... 1 to 65535...
1 interface hsk1 korel up=0 / 1 interface hsk1 korel up=65536 -> the host... 1 to 65535...
1 interface hsk1 korel ttl=0 / 1 interface hsk1 korel ttl=256 -> the multicast time... 1 to 255...
1 interface hsk1 korel a4=223.255.255.255 / 1 interface hsk1 korel m4=240.0.0.0 -> ... no multicast...
1 interface hsk1 korel a6=fe80::1 / 1 interface hsk1 korel m6=feff:: -> ... is no multicast address
1 interface hsk1 korel a4=ff19::1 / 1 interface hsk1 korel m6=224.0.0.1 -> ... is of the other family
1 interface hsk1 none               -> interface 'hsk1' must carry korel or witness traffic
1 interface hsk3 korel / 1 uninterface hsk3 korel / 1 uninterface hsk3 witness -> the host has no interface 'hsk3'; it has...
1 uninterface hsk0 korel / 2 interface hsk0 korel; 1 uninterface hsk0 korel -> ... 'hsk0' is not in...
1 interface hsk0 korel; 1 clearnet; 1 uninterface hsk0 korel -> interface 'hsk0' is in the persisted Korel network configuration and not active; 'korel network restore' restores it first, or --force removes it from there
1 uninterface hsk0 Korel force      -> 'Korel' is no traffic type; the types are korel and witness
)");
}

}  // namespace
}  // namespace lab_test
