#include <random>

#include "lab/model/AgentRecord.h"
#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using lab::Agent;
using lab::AgentEntry;
using testing::ElementsAre;
using testing::IsEmpty;
using Type = Tovrin::Korel::KorelUnicastAgentType;

const std::string kNode1 = "11111111-0000-4000-8000-000000000001";
const std::string kNode2 = "22222222-0000-4000-8000-000000000002";
const std::string kThumbprint = "01:23:45:67:89:AB:CD:EF:01:23:45:67:89:ab:cd:ef:01:23:45:67";

/// A node agent of cluster A.
Agent Node() { return {kNode1, Type::Node, true, "10.0.0.2", 12321, "", "", kClusterA}; }

Agent NodeBut(const std::function<void(Agent&)>& change) {
  Agent agent = Node();
  change(agent);
  return agent;
}

Agent Witness(const std::string& address, const std::string& cluster = kClusterA) {
  return {kZeros, Type::Witness, false, address, 12321, "", "", cluster};
}

void Add(const Agent& agent) {
  HostControl()->AddUnicastAgent(agent.nodeUuid, agent.isWitness, agent.supportsUnicast,
                                 agent.address, agent.port, !agent.interfaceName.empty(),
                                 agent.interfaceName, "", agent.certThumbprint,
                                 agent.subClusterUuid);
}

void Remove(const Agent& agent) {
  EXPECT_TRUE(HostControl()->RemoveUnicastAgent(agent.nodeUuid, agent.address, agent.port,
                                                agent.isWitness, 0, agent.subClusterUuid, false));
}

std::vector<Agent> Agents(const std::string& cluster = "", bool all = true) {
  std::vector<Agent> agents;
  HostControl()->GetUnicastAgents(agents, all, cluster);
  return agents;
}

std::vector<std::string> Addresses(const std::string& cluster = "", bool all = true) {
  std::vector<std::string> addresses;
  for (const Agent& agent : Agents(cluster, all)) addresses.push_back(agent.address);
  return addresses;
}

using AgentTest = ClustersTest;

TEST_F(AgentTest, AreTheHostsOwnInTheOrderOfAdding) {
  Add(Node());
  Add({"22222222-0000-4000-8000-00000000000A", Type::Metadata, false, "FE80:0:0:0:0:0:0:1", 65535,
       "hsk1", kThumbprint, "AAAAAAAA-0000-4000-8000-000000000001"});
  Add(Witness("10.0.0.9"));
  Add({kNode2, Type::Remote, true, "10.0.0.3", 1, "", "", kClusterB});
  EXPECT_THAT(Addresses(), ElementsAre("10.0.0.2", "fe80::1", "10.0.0.9", "10.0.0.3"));
  EXPECT_THAT(Addresses(kClusterB), ElementsAre("10.0.0.3"));
  EXPECT_THAT(Addresses("", false), ElementsAre("10.0.0.2", "10.0.0.3"));
  EXPECT_THAT(HostControl()->GetUnicastWitnesses(), ElementsAre("10.0.0.9"));
  const std::string tail = ";cluster=" + kClusterA;
  EXPECT_THAT(
      HostControl()->GetUnicastAgentEntries(kClusterA),
      ElementsAre(
          "uuid=" + kNode1 + ";type=0;unicast=1;addr=10.0.0.2;port=12321;iface=;thumbprint=" + tail,
          "uuid=22222222-0000-4000-8000-00000000000a;type=2;unicast=0;addr=fe80::1;"
          "port=65535;iface=hsk1;thumbprint=" +
              kThumbprint + tail,
          AgentEntry(Witness("10.0.0.9"))));
  EXPECT_THAT((StandOn("host2"), Addresses()), IsEmpty());
  StandOn("host1");
  Reboot("host1");
  EXPECT_EQ(Agents().size(), 4U);
  Restore();
  Leave(kClusterA);
  EXPECT_THAT(Addresses(), ElementsAre("10.0.0.3")) << "the others went with their cluster";
}

TEST_F(AgentTest, EveryPartTellsAgentsApart) {
  for (const Agent& agent :
       {Node(), NodeBut([](Agent& a) { a.nodeUuid = kNode2; }),
        NodeBut([](Agent& a) { a.isWitness = Type::Metadata; }),
        NodeBut([](Agent& a) { a.address = "10.0.0.3"; }), NodeBut([](Agent& a) { a.port = 1; }),
        NodeBut([](Agent& a) { a.subClusterUuid = ""; })}) {
    Add(agent);
  }
  EXPECT_EQ(Agents().size(), 6U);
  for (const Agent& agent : Agents()) Remove(agent);
  EXPECT_THAT(Agents(), IsEmpty());
}

TEST_F(AgentTest, RemovalTakesTheVeryOneBeforeAnyThatFits) {
  StandOn("host6");  // a witness, which has one unicast witness for each cluster
  Agent first = Witness("10.0.0.9", "");
  first.nodeUuid = kNode1;
  Add(first);
  Add(Witness("10.0.0.9"));
  EXPECT_THAT(HostControl()->GetUnicastWitnesses(), ElementsAre("10.0.0.9", "10.0.0.9"));
  Remove(Witness("10.0.0.9", ""));
  ASSERT_EQ(Agents().size(), 1U);
  EXPECT_EQ(Agents()[0].nodeUuid, kNode1);
  Remove(Witness("10.0.0.9", ""));
  EXPECT_THAT(Agents(), IsEmpty());
}

TEST_F(AgentTest, UnicastModeAsksForNodesThatAllSupportIt) {
  const std::pair<Agent, bool> steps[] = {
      {Witness("10.0.0.9"), false},
      {Node(), true},
      {{kNode2, Type::Node, false, "10.0.0.3", 12321, "", "", kClusterA}, false}};
  for (const auto& [agent, expected] : steps) {
    Add(agent);
    bool isUnicast = !expected;
    KorelUtil::GetUnicastModeForCluster(isUnicast, kClusterA);
    EXPECT_EQ(isUnicast, expected) << agent.address;
  }
}

TEST_F(AgentTest, Refusals) {
  Add(Node());
  Add(Witness("10.0.0.9"));
  const std::string noThumbprint =
      " is no SHA-1 thumbprint: 20 bytes of two hexadecimal digits with colons between them";
  const auto but = [](const std::function<void(Agent&)>& change) {
    return [agent = NodeBut(change)] { Add(agent); };
  };
  ExpectRefusedAt(
      "host1",
      {{[] { Add(Node()); }, "there is a node agent " + kNode1 + " at 10.0.0.2 port 12321 already"},
       {but([](Agent& a) { a.nodeUuid = "x"; }), NotUuid("x")},
       {but([](Agent& a) { a.nodeUuid = kZeros; }), "a node agent must have a UUID"},
       {but([](Agent& a) { a.isWitness = static_cast<Type>(4); }), "there is no agent type 4"},
       {but([](Agent& a) { a.address = "10.0"; }), "'10.0' is neither an IPv4 nor an IPv6 address"},
       {but([](Agent& a) { a.port = 0; }), "the port must be from 1 to 65535, got 0"},
       {but([](Agent& a) { a.port = 65536; }), "the port must be from 1 to 65535, got 65536"},
       {but([](Agent& a) { a.interfaceName = "eth0"; }),
        "the host has no interface 'eth0'; it has hsk0, hsk1, hsk2"},
       {but([](Agent& a) { a.certThumbprint = "ab"; }), "'ab'" + noThumbprint},
       {but([](Agent& a) { a.subClusterUuid = kClusterB; }),
        "the host is not in cluster " + kClusterB},
       {[] {
          Add({kNode1, Type::Remote, true, "10.0.0.2", 1, "", "", ""});
        },
        "a remote agent must name its cluster"},
       {[] { Add(Witness("10.0.0.8")); }, "there is a unicast witness already, 10.0.0.9"},
       {[] {
          Remove({kNode1, Type::Witness, true, "10.0.0.2", 12321, "", "", ""});
        },
        "there is no witness agent " + kNode1 + " at 10.0.0.2 port 12321"}});
  StandOn("host2");
  ExpectRefused([] { Remove(Node()); }, "there is no node agent " + kNode1 +
                                            " at 10.0.0.2 port 12321 of cluster " + kClusterA);
}

TEST(AgentEntryTest, BadEntriesAreRefusedSayingWhy) {
  const std::string good = AgentEntry(Node());
  const struct {
    std::string part, by, message;
  } cases[] = {
      {kClusterA, kClusterA + ";", "'' is not of the form key=value"},
      {kClusterA, kClusterA + ";port=1", "the key 'port' is there twice"},
      {kClusterA, kClusterA + ";x=1", "there is no key 'x'"},
      {";port=12321", "", "the key 'port' is missing"},
      {"port=12321", "port=0", "the port must be from 1 to 65535, got 0"},
      {"port=12321", "port=012321", "port must be a number from 0 to 65535, got '012321'"},
      {"type=0", "type=4", "type must be a number from 0 to 3, got '4'"},
      {"unicast=1", "unicast=true", "unicast must be a number from 0 to 1, got 'true'"},
      {"addr=10.0.0.2", "addr=host2", "'host2' is neither an IPv4 nor an IPv6 address"},
      {kNode1, "x", NotUuid("x")},
      {"iface=", "iface=%+1", "no two hexadecimal digits follow the % in '%+1'"},
  };
  for (const auto& [part, by, message] : cases) {
    std::string entry = good;
    entry.replace(entry.find(part), part.size(), by);
    const auto read = [&] { KorelUtil::KorelUnicastAddressInfoFromString(entry, true); };
    EXPECT_EQ(Failure(read), message) << entry;
  }
  const Agent lenient = KorelUtil::KorelUnicastAddressInfoFromString(good + ";x=1", false);
  EXPECT_EQ(AgentEntry(lenient), good) << "unknown keys are left out";
}

TEST(AgentEntryTest, EveryAgentComesBackFromItsEntryAndASpoiltOneIsReadOrRefused) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE(seed);
  std::mt19937_64 dice(seed);
  const auto bytes = [&](std::size_t maxSize) {
    std::string text(dice() % (maxSize + 1), '\0');
    for (char& byte : text) byte = static_cast<char>(dice() % 256);
    return text;
  };
  for (int i = 0; i < 2000; ++i) {
    const Agent agent = NodeBut([&](Agent& a) {
      a.nodeUuid = KorelUtil::KorelUuidToString({dice(), dice()});
      a.isWitness = static_cast<Type>(dice() % 4);
      if (dice() % 2 == 1) a.address = "fe80::" + std::to_string(1 + dice() % 9999);
      a.port = static_cast<std::int64_t>(1 + dice() % 65535);
      a.interfaceName = bytes(12);
      if (dice() % 2 == 1) a.certThumbprint = kThumbprint;
    });
    std::string entry = AgentEntry(agent);
    EXPECT_EQ(entry.find_first_of(std::string("\0\n\" \xff", 5)), std::string::npos) << entry;
    const Agent read = KorelUtil::KorelUnicastAddressInfoFromString(entry, true);
    ASSERT_EQ(AgentEntry(read), entry);
    ASSERT_EQ(read.interfaceName, agent.interfaceName) << entry;
    entry.replace(dice() % entry.size(), dice() % 6, bytes(3));
    try {
      const Agent spoilt = KorelUtil::KorelUnicastAddressInfoFromString(entry, true);
      ASSERT_EQ(AgentEntry(lab::CheckedAgent(spoilt)), AgentEntry(spoilt)) << entry;
    } catch (const Tovrin::Lib::Korel::KorelCtlException& refusal) {
      ASSERT_NE(refusal.GetMessage(), "") << entry;
    }
  }
}

}  // namespace
}  // namespace lab_test
