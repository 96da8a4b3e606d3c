#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using Tovrin::Korel::KorelIpAddress;
using Tovrin::Network::Ipv4Address;
using Tovrin::Network::Ipv6Address;

KorelIpAddress V4(const std::string& text) { return {false, Ipv4Address(text), {}, text}; }
KorelIpAddress V6(const std::string& text) { return {true, {}, Ipv6Address(text), text}; }

/// The values of one interface, all of them different.
struct Config {
  std::string name = "hsk1";
  KorelIpAddress agentV4 = V4("224.2.3.4");
  KorelIpAddress agentV6 = V6("FF19:0:0:0:0:2:3:4");
  KorelIpAddress masterV4 = V4("224.1.2.3");
  KorelIpAddress masterV6 = V6("ff19::1:2:3");
  std::int64_t agentPort = 23451;
  std::int64_t masterPort = 12345;
  std::int64_t unicastPort = 12321;
  std::int64_t ttl = 5;
  bool korel = true;
  bool witness = false;
};

void Set(const Config& c) {
  HostControl()->SetHsknicConfig({c.name, c.agentV4, c.agentV6, c.masterV4, c.masterV6, c.agentPort,
                                  c.masterPort, c.unicastPort, c.ttl, c.korel, c.witness, ""});
}

using NetworkConfigTest = LabTest;
using NetworkEncryptionTest = ClustersTest;

TEST_F(NetworkConfigTest, RemovalTakesOneTypeAndTheInterfaceWithTheLast) {
  const auto host = HostControl();
  Set({.witness = true});
  host->RemoveHsknic("hsk1", false, "korel");
  EXPECT_FALSE(host->IsHsknicConfigured("hsk1", "korel"));
  EXPECT_TRUE(host->IsHsknicConfigured("hsk1", "witness"));
  host->RemoveHsknic("hsk1", false, "witness");
  host->RestoreNetworkConfig();
  EXPECT_TRUE(host->GetHsknicConfigs().empty()) << "the persisted one is gone too";
}

TEST_F(NetworkConfigTest, Refusals) {
  const auto host = HostControl();
  Set({});
  const std::string group = " is no multicast address";
  const std::string range = " must be from 1 to 65535, got ";
  const std::string noType = "'Korel' is no traffic type; the types are korel and witness";
  const std::pair<Config, std::string> cases[] = {
      {{.name = "hsk3"}, "the host has no interface 'hsk3'; it has hsk0, hsk1, hsk2"},
      {{.agentV4 = V4("10.0.0.1")}, "the IPv4 agent group 10.0.0.1" + group},
      {{.masterV6 = V4("224.0.0.1")}, "the IPv6 master group is of the other family"},
      {{.agentPort = 0}, "the agent multicast port" + range + "0"},
      {{.ttl = 256}, "the multicast time-to-live must be from 1 to 255, got 256"},
      {{.korel = false}, "interface 'hsk1' must carry korel or witness traffic"},
  };
  for (const auto& each : cases) ExpectRefused([&] { Set(each.first); }, each.second);
  ExpectRefusedAt("host1", {{[&] { host->IsHsknicConfigured("hsk1", "Korel"); }, noType},
                            {[&] { host->RemoveHsknic("hsk2", false, "korel"); },
                             "interface 'hsk2' is not in the Korel network configuration"}});
}

TEST_F(NetworkEncryptionTest, Refusals) {
  const auto host = HostControl();
  ExpectRefusedAt("host1",
                  {{[&] { host->SetRekeyInterval(kClusterA, 29); },
                    "the rekey interval in minutes must be from 30 to 10080, got 29"},
                   {[&] { host->SetDataInTransitEncryption(kClusterA, false, "settled", 0); },
                    "the state of encryption must be SETTLED, got 'settled'"}});
}

}  // namespace
}  // namespace lab_test
