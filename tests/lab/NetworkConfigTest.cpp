#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Tovrin::Korel::KorelHskNicConfig2;
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

void SetTraffic(const std::string& name, bool korel, bool witness) {
  Set({.name = name, .korel = korel, .witness = witness});
}

/// As `korel network remove` does it.
void RemoveWhole(const std::string& name, bool force = false) {
  for (const char* type : {"korel", "witness"}) HostControl()->RemoveHsknic(name, force, type);
}

/// "hsk0: korel, witness" for each configured interface.
std::vector<std::string> Configured() {
  std::vector<std::string> lines;
  for (const auto& config : HostControl()->GetHsknicConfigs()) {
    lines.push_back(config->GetHsknicName() + ":");
    std::vector<std::string> types;
    config->GetTrafficTypes(types);
    for (const std::string& type : types) {
      lines.back() += " " + type;
      EXPECT_TRUE(HostControl()->IsHsknicConfigured(config->GetHsknicName(), type));
    }
  }
  return lines;
}

using NetworkConfigTest = LabTest;
using NetworkEncryptionTest = ClustersTest;

TEST_F(NetworkConfigTest, InterfaceComesBackAsItWasSet) {
  Set({});
  const auto configs = HostControl()->GetHsknicConfigs();
  ASSERT_EQ(configs.size(), 1U);
  const KorelHskNicConfig2& config = *configs[0];
  EXPECT_EQ(config.GetAgentMulticastGroup().v4.GetStringAddress(), "224.2.3.4");
  EXPECT_EQ(config.GetAgentV6MulticastGroup().v6.GetStringAddress(), "ff19::2:3:4");
  EXPECT_EQ(config.GetPrimaryMulticastGroup().text, "224.1.2.3");
  EXPECT_EQ(config.GetPrimaryV6MulticastGroup().text, "ff19::1:2:3");
  EXPECT_EQ(config.GetAgentMulticastPort(), 23451);
  EXPECT_EQ(config.GetPrimaryMulticastPort(), 12345);
  EXPECT_EQ(config.GetHostUnicastPort(), 12321);
  EXPECT_EQ(config.GetMulticastTTL(), 5);
}

TEST_F(NetworkConfigTest, InterfacesAreInTheOrderOfTheInventoryWithUuidsOfTheirOwn) {
  lab::InitLab({{"h", {}, {"hsk9", "hsk1", "hsk5"}}, {"g", {}, {"hsk9"}}}, false);
  for (const char* name : {"hsk5", "hsk1", "hsk9"}) SetTraffic(name, true, false);
  EXPECT_THAT(Configured(), ElementsAre("hsk9: korel", "hsk1: korel", "hsk5: korel"));
  const auto uuid = [](std::size_t i) {
    return HostControl()->GetHsknicConfigs().at(i)->GetIfaceUuid();
  };
  const std::string first = uuid(0);
  EXPECT_NE(uuid(1), first);
  RemoveWhole("hsk9");
  SetTraffic("hsk9", false, true);
  EXPECT_EQ(uuid(0), first);
  StandOn("g");
  EXPECT_THAT(Configured(), IsEmpty());
  SetTraffic("hsk9", true, false);
  EXPECT_NE(uuid(0), first);
}

TEST_F(NetworkConfigTest, ClearAndRebootLeaveWhatRestoreBringsBack) {
  const auto host = HostControl();
  SetTraffic("hsk1", true, true);
  SetTraffic("hsk2", false, true);
  for (const bool isReboot : {false, true}) {
    isReboot ? Reboot("host1") : host->ClearNetworkConfig();
    EXPECT_THAT(Configured(), IsEmpty());
    EXPECT_FALSE(host->IsHsknicConfigured("hsk1", "korel"));
    host->RestoreNetworkConfig();
    EXPECT_THAT(Configured(), ElementsAre("hsk1: korel witness", "hsk2: witness"));
  }
  host->ClearNetworkConfig();
  SetTraffic("hsk1", true, false);
  host->RemoveHsknic("hsk2", true, "witness");
  host->RestoreNetworkConfig();
  EXPECT_THAT(Configured(), ElementsAre("hsk1: korel")) << "force reaches what is persisted only";
}

TEST_F(NetworkConfigTest, RemovalTakesOneTypeAndTheInterfaceWithTheLast) {
  for (const auto& [korel, witness] : {std::pair{true, false}, {false, true}, {true, true}}) {
    SetTraffic("hsk1", korel, witness);
    RemoveWhole("hsk1");
    HostControl()->RestoreNetworkConfig();
    EXPECT_THAT(Configured(), IsEmpty()) << "the persisted one is gone too";
  }
  SetTraffic("hsk1", true, true);
  HostControl()->RemoveHsknic("hsk1", false, "korel");
  RemoveWhole("no such interface", true);
  EXPECT_THAT(Configured(), ElementsAre("hsk1: witness"));
}

TEST_F(NetworkConfigTest, Refusals) {
  const auto host = HostControl();
  Set({});
  const std::string group = " is no multicast address";
  const std::string range = " must be from 1 to 65535, got ";
  const std::string unknown = "the host has no interface 'hsk3'; it has hsk0, hsk1, hsk2";
  const std::string noType = "'Korel' is no traffic type; the types are korel and witness";
  const std::pair<Config, std::string> cases[] = {
      {{.name = "hsk3"}, unknown},
      {{.agentV4 = V4("10.0.0.1")}, "the IPv4 agent group 10.0.0.1" + group},
      {{.agentV6 = V6("fe80::1")}, "the IPv6 agent group fe80::1" + group},
      {{.masterV4 = V4("240.0.0.0")}, "the IPv4 master group 240.0.0.0" + group},
      {{.masterV6 = V4("224.0.0.1")}, "the IPv6 master group is of the other family"},
      {{.agentPort = 0}, "the agent multicast port" + range + "0"},
      {{.masterPort = 65536}, "the master multicast port" + range + "65536"},
      {{.unicastPort = -1}, "the host unicast port" + range + "-1"},
      {{.ttl = 256}, "the multicast time-to-live must be from 1 to 255, got 256"},
      {{.korel = false}, "interface 'hsk1' must carry korel or witness traffic"},
  };
  for (const auto& each : cases) ExpectRefused([&] { Set(each.first); }, each.second);
  ExpectRefusedAt("host1", {{[&] { host->IsHsknicConfigured("hsk1", "Korel"); }, noType},
                            {[&] { host->RemoveHsknic("hsk1", true, "Korel"); }, noType},
                            {[&] { host->RemoveHsknic("hsk3", false, "korel"); }, unknown},
                            {[] { RemoveWhole("hsk2"); },
                             "interface 'hsk2' is not in the Korel network configuration"}});
}

TEST_F(NetworkEncryptionTest, IsTheClusters) {
  const auto witness = At("host6");
  JoinWitness(kClusterB, "any");
  witness->SetDataInTransitEncryption(kClusterA, true, "SETTLED", 0);
  witness->SetRekeyInterval(kClusterA, 30);
  witness->SetRekeyInterval(kClusterB, 10080);
  const auto host = At("host1");
  const std::tuple<std::string, bool, int> cases[] = {
      {kClusterA, true, 30}, {kClusterB, false, 10080}, {kZeros, false, 1440}};
  for (const auto& [cluster, isEncrypted, minutes] : cases) {
    EXPECT_EQ(host->IsDataInTransitEncryptionEnabled(cluster, true), isEncrypted) << cluster;
    EXPECT_EQ(host->GetRekeyInterval(cluster, true), minutes) << cluster;
  }
  const std::string range = "the rekey interval in minutes must be from 30 to 10080, got ";
  ExpectRefusedAt(
      "host1",
      {{[&] { host->SetRekeyInterval(kClusterA, 29); }, range + "29"},
       {[&] { host->SetRekeyInterval(kClusterA, 10081); }, range + "10081"},
       {[&] { host->SetRekeyInterval(kClusterB, 60); }, "the host is not in cluster " + kClusterB},
       {[&] { host->SetDataInTransitEncryption(kClusterA, false, "settled", 0); },
        "the state of encryption must be SETTLED, got 'settled'"},
       {[&] { host->GetRekeyInterval(kDatastore1, true); }, "there is no cluster " + kDatastore1},
       {[&] { host->IsDataInTransitEncryptionEnabled("", true); }, NotUuid("")}});
}

}  // namespace
}  // namespace lab_test
