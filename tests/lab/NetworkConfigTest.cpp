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

template <typename Change>
Config But(Change change) {
  Config config;
  change(config);
  return config;
}

void Set(const Config& c) {
  HostControl()->SetHsknicConfig({c.name, c.agentV4, c.agentV6, c.masterV4, c.masterV6, c.agentPort,
                                  c.masterPort, c.unicastPort, c.ttl, c.korel, c.witness, ""});
}

void SetTraffic(const std::string& name, bool korel, bool witness) {
  Set(But([&](Config& config) {
    config.name = name;
    config.korel = korel;
    config.witness = witness;
  }));
}

void Remove(const std::string& name, bool force, const std::string& type) {
  HostControl()->RemoveHsknic(name, force, type);
}

/// As `korel network remove` does it.
void RemoveWhole(const std::string& name, bool force = false) {
  Remove(name, force, "korel");
  Remove(name, force, "witness");
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

TEST_F(NetworkConfigTest, InterfaceComesBackAsItWasSet) {
  Set({});
  const auto configs = HostControl()->GetHsknicConfigs();
  ASSERT_EQ(configs.size(), 1U);
  const KorelHskNicConfig2& config = *configs[0];
  EXPECT_EQ(config.GetHsknicName(), "hsk1");
  EXPECT_EQ(config.GetAgentMulticastGroup().v4.GetStringAddress(), "224.2.3.4");
  EXPECT_EQ(config.GetAgentV6MulticastGroup().v6.GetStringAddress(), "ff19::2:3:4");
  EXPECT_EQ(config.GetPrimaryMulticastGroup().text, "224.1.2.3");
  EXPECT_EQ(config.GetPrimaryV6MulticastGroup().text, "ff19::1:2:3");
  EXPECT_TRUE(config.GetAgentV6MulticastGroup().isV6);
  EXPECT_FALSE(config.GetAgentMulticastGroup().isV6);
  EXPECT_EQ(config.GetAgentMulticastPort(), 23451);
  EXPECT_EQ(config.GetPrimaryMulticastPort(), 12345);
  EXPECT_EQ(config.GetHostUnicastPort(), 12321);
  EXPECT_EQ(config.GetMulticastTTL(), 5);
  EXPECT_TRUE(config.korelTraffic);
  EXPECT_FALSE(config.witnessTraffic);
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
  SetTraffic("hsk1", true, true);
  SetTraffic("hsk2", false, true);
  for (const std::function<void()>& drop :
       {std::function<void()>([] { HostControl()->ClearNetworkConfig(); }),
        std::function<void()>([] { Reboot("host1"); })}) {
    drop();
    EXPECT_THAT(Configured(), IsEmpty());
    EXPECT_FALSE(HostControl()->IsHsknicConfigured("hsk1", "korel"));
    HostControl()->RestoreNetworkConfig();
    EXPECT_THAT(Configured(), ElementsAre("hsk1: korel witness", "hsk2: witness"));
  }
  HostControl()->ClearNetworkConfig();
  SetTraffic("hsk1", true, false);
  EXPECT_THAT(Configured(), ElementsAre("hsk1: korel"));
  Remove("hsk2", true, "witness");
  HostControl()->RestoreNetworkConfig();
  EXPECT_THAT(Configured(), ElementsAre("hsk1: korel")) << "force reaches what is persisted only";
}

TEST_F(NetworkConfigTest, RemovalTakesOneTypeAndTheInterfaceWithTheLast) {
  for (const auto& [korel, witness] : {std::pair{true, false}, {false, true}, {true, true}}) {
    SetTraffic("hsk1", korel, witness);
    RemoveWhole("hsk1");
    EXPECT_THAT(Configured(), IsEmpty()) << korel << witness;
    HostControl()->RestoreNetworkConfig();
    EXPECT_THAT(Configured(), IsEmpty()) << "the persisted one is gone too";
  }
  SetTraffic("hsk1", true, true);
  Remove("hsk1", false, "korel");
  EXPECT_THAT(Configured(), ElementsAre("hsk1: witness"));
  RemoveWhole("hsk2", true);
  RemoveWhole("no such interface", true);
  EXPECT_THAT(Configured(), ElementsAre("hsk1: witness"));
}

TEST_F(NetworkConfigTest, Refusals) {
  Set({});
  const auto refuse = [](int line, const std::string& message, auto change) -> Refusal {
    return {line, "host1", [=] { Set(But(change)); }, message};
  };
  const std::string unknown = "the host has no interface 'hsk3'; it has hsk0, hsk1, hsk2";
  const std::string noType = "'Korel' is no traffic type; the types are korel and witness";
  ExpectRefusals({
      refuse(__LINE__, unknown, [](Config& config) { config.name = "hsk3"; }),
      refuse(__LINE__, "the IPv4 agent group 10.0.0.1 is no multicast address",
             [](Config& config) { config.agentV4 = V4("10.0.0.1"); }),
      refuse(__LINE__, "the IPv6 agent group fe80::1 is no multicast address",
             [](Config& config) { config.agentV6 = V6("fe80::1"); }),
      refuse(__LINE__, "the IPv4 master group 240.0.0.0 is no multicast address",
             [](Config& config) { config.masterV4 = V4("240.0.0.0"); }),
      refuse(__LINE__, "the IPv6 master group is of the other family",
             [](Config& config) { config.masterV6 = V4("224.0.0.1"); }),
      refuse(__LINE__, "the agent multicast port must be from 1 to 65535, got 0",
             [](Config& config) { config.agentPort = 0; }),
      refuse(__LINE__, "the master multicast port must be from 1 to 65535, got 65536",
             [](Config& config) { config.masterPort = 65536; }),
      refuse(__LINE__, "the host unicast port must be from 1 to 65535, got -1",
             [](Config& config) { config.unicastPort = -1; }),
      refuse(__LINE__, "the multicast time-to-live must be from 1 to 255, got 256",
             [](Config& config) { config.ttl = 256; }),
      refuse(__LINE__, "interface 'hsk1' must carry korel or witness traffic",
             [](Config& config) { config.korel = false; }),
      {__LINE__, "host1", [] { HostControl()->IsHsknicConfigured("hsk1", "Korel"); }, noType},
      {__LINE__, "host1", [] { Remove("hsk1", true, "Korel"); }, noType},
      {__LINE__, "host1", [] { Remove("hsk3", false, "korel"); }, unknown},
      {__LINE__, "host1", [] { Remove("hsk3", false, "witness"); }, unknown},
      {__LINE__, "host1", [] { RemoveWhole("hsk2"); },
       "interface 'hsk2' is not in the Korel network configuration"},
  });
}

TEST_F(NetworkConfigTest, EncryptionIsTheClusters) {
  AddHostsUpTo(3);
  StandOn("host1");
  Create(kClusterA);
  StandOn("host3");
  Create(kClusterB);
  StandOn("host2");
  JoinWitness(kClusterA, "any");
  JoinWitness(kClusterB, "any");
  HostControl()->SetDataInTransitEncryption(kClusterA, true, "SETTLED", 0);
  HostControl()->SetRekeyInterval(kClusterA, 30);
  HostControl()->SetRekeyInterval(kClusterB, 10080);
  StandOn("host1");
  const struct {
    std::string cluster;
    bool isEncrypted;
    int minutes;
  } cases[] = {{kClusterA, true, 30}, {kClusterB, false, 10080}, {kZeros, false, 1440}};
  for (const auto& each : cases) {
    EXPECT_EQ(HostControl()->IsDataInTransitEncryptionEnabled(each.cluster, true),
              each.isEncrypted);
    EXPECT_EQ(HostControl()->GetRekeyInterval(each.cluster, true), each.minutes);
  }
  const auto rekey = [](std::string cluster, int minutes) {
    return [=] { HostControl()->SetRekeyInterval(cluster, minutes); };
  };
  ExpectRefusals({
      {__LINE__, "host1", rekey(kClusterA, 29),
       "the rekey interval in minutes must be from 30 to 10080, got 29"},
      {__LINE__, "host1", rekey(kClusterA, 10081),
       "the rekey interval in minutes must be from 30 to 10080, got 10081"},
      {__LINE__, "host1", rekey(kClusterB, 60), "the host is not in cluster " + kClusterB},
      {__LINE__, "host1", rekey(kZeros, 60), "the host is not in cluster " + kZeros},
      {__LINE__, "host1",
       [] { HostControl()->SetDataInTransitEncryption(kClusterA, false, "settled", 0); },
       "the state of encryption must be SETTLED, got 'settled'"},
      {__LINE__, "host1", [] { HostControl()->GetRekeyInterval(kClusterC, true); },
       "there is no cluster " + kClusterC},
      {__LINE__, "host1", [] { HostControl()->IsDataInTransitEncryptionEnabled("", true); },
       NotUuid("")},
  });
}

}  // namespace
}  // namespace lab_test
