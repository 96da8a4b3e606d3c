#include <random>

#include "lab/model/AgentRecord.h"
#include "tests/lab/ClusterSupport.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using lab::Agent;
using testing::ElementsAre;
using testing::IsEmpty;
using Type = Tovrin::Korel::KorelUnicastAgentType;

const std::string kNode1 = "11111111-0000-4000-8000-000000000001";
const std::string kNode2 = "22222222-0000-4000-8000-000000000002";
const std::string kThumbprint = "01:23:45:67:89:AB:CD:EF:01:23:45:67:89:ab:cd:ef:01:23:45:67";

/// A node agent of cluster A.
Agent Node() { return {kNode1, Type::Node, true, "10.0.0.2", 12321, "", "", kClusterA}; }

template <typename Change>
Agent NodeBut(Change change) {
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

bool IsUnicast() {
  bool isUnicast = false;
  KorelUtil::GetUnicastModeForCluster(isUnicast, kClusterA);
  return isUnicast;
}

/// Equal agents are equal entries.
std::string Entry(const Agent& agent) { return lab::AgentEntry(agent); }

class AgentTest : public LabTest {
 protected:
  AgentTest() {
    AddHostsUpTo(2);
    StandOn("host1");
    Create(kClusterA);
  }
};

TEST_F(AgentTest, AreTheHostsOwnInTheOrderOfAdding) {
  Add(Node());
  Add(NodeBut([](Agent& agent) {
    agent = {"22222222-0000-4000-8000-00000000000A",
             Type::Metadata,
             false,
             "FE80:0:0:0:0:0:0:1",
             65535,
             "hsk1",
             kThumbprint,
             "AAAAAAAA-0000-4000-8000-000000000001"};
  }));
  Add(Witness("10.0.0.9"));
  Add({kNode2, Type::Remote, true, "10.0.0.3", 1, "", "", kClusterB});
  EXPECT_THAT(Addresses(), ElementsAre("10.0.0.2", "fe80::1", "10.0.0.9", "10.0.0.3"));
  EXPECT_THAT(Addresses(kClusterB), ElementsAre("10.0.0.3"));
  EXPECT_THAT(Addresses("", false), ElementsAre("10.0.0.2", "10.0.0.3"));
  EXPECT_THAT(HostControl()->GetUnicastWitnesses(), ElementsAre("10.0.0.9"));
  EXPECT_EQ(Entry(Agents()[1]), Entry({"22222222-0000-4000-8000-00000000000a", Type::Metadata,
                                       false, "fe80::1", 65535, "hsk1", kThumbprint, kClusterA}));
  const auto entries = HostControl()->GetUnicastAgentEntries(kClusterA);
  EXPECT_EQ(entries.at(0), "uuid=" + kNode1 +
                               ";type=0;unicast=1;addr=10.0.0.2;port=12321;iface=;thumbprint=;"
                               "cluster=" +
                               kClusterA);
  EXPECT_EQ(entries.size(), 3U);
  HostControl()->RefreshUnicastAgents("");
  StandOn("host2");
  EXPECT_THAT(Addresses(), IsEmpty());
}

TEST_F(AgentTest, EveryPartTellsAgentsApart) {
  Add(Node());
  Add(NodeBut([](Agent& agent) { agent.nodeUuid = kNode2; }));
  Add(NodeBut([](Agent& agent) { agent.isWitness = Type::Metadata; }));
  Add(NodeBut([](Agent& agent) { agent.address = "10.0.0.3"; }));
  Add(NodeBut([](Agent& agent) { agent.port = 1; }));
  Add(NodeBut([](Agent& agent) { agent.subClusterUuid = ""; }));
  EXPECT_EQ(Agents().size(), 6U);
  for (const Agent& agent : Agents()) Remove(agent);
  EXPECT_THAT(Agents(), IsEmpty());
}

TEST_F(AgentTest, RemovalTakesTheVeryOneBeforeAnyThatFits) {
  Agent first = Witness("10.0.0.9", "");
  first.nodeUuid = kNode1;
  Add(first);
  Add(Witness("10.0.0.9"));
  const auto removeAny = [] {
    HostControl()->RemoveUnicastAgent(kZeros, "10.0.0.9", 12321, Type::Witness, 0, "", false);
  };
  removeAny();
  ASSERT_EQ(Agents().size(), 1U);
  EXPECT_EQ(Agents()[0].nodeUuid, kNode1);
  removeAny();
  EXPECT_THAT(Agents(), IsEmpty());
}

TEST_F(AgentTest, UnicastModeAsksForNodesThatAllSupportIt) {
  EXPECT_FALSE(IsUnicast());
  Add(Witness("10.0.0.9"));
  EXPECT_FALSE(IsUnicast());
  Add(Node());
  EXPECT_TRUE(IsUnicast());
  Add(NodeBut([](Agent& agent) {
    agent.nodeUuid = kNode2;
    agent.supportsUnicast = false;
  }));
  EXPECT_FALSE(IsUnicast());
}

TEST_F(AgentTest, OutliveARebootAndGoWithTheCluster) {
  Add(Node());
  Add({kNode2, Type::Remote, true, "10.0.0.3", 1, "", "", kClusterB});
  Reboot("host1");
  EXPECT_EQ(Agents().size(), 2U);
  HostControl()->RestoreCluster(false, false);
  Leave(kClusterA);
  EXPECT_THAT(Addresses(), ElementsAre("10.0.0.3"));
}

TEST_F(AgentTest, Refusals) {
  Add(Node());
  Add(Witness("10.0.0.9"));
  const auto refuse = [](int line, const std::string& message, auto change) -> Refusal {
    return {line, "host1", [=] { Add(NodeBut(change)); }, message};
  };
  const std::string noThumbprint =
      " is no SHA-1 thumbprint: 20 bytes of two hexadecimal digits with colons between them";
  ExpectRefusals({
      refuse(__LINE__, "there is a node agent " + kNode1 + " at 10.0.0.2 port 12321 already",
             [](Agent& agent) { agent.supportsUnicast = false; }),
      refuse(__LINE__, NotUuid("x"), [](Agent& agent) { agent.nodeUuid = "x"; }),
      refuse(__LINE__, NotUuid("y"), [](Agent& agent) { agent.subClusterUuid = "y"; }),
      refuse(__LINE__, "a node agent must have a UUID",
             [](Agent& agent) { agent.nodeUuid = kZeros; }),
      refuse(__LINE__, "there is no agent type 4",
             [](Agent& agent) { agent.isWitness = static_cast<Type>(4); }),
      refuse(__LINE__, "'10.0.0' is neither an IPv4 nor an IPv6 address",
             [](Agent& agent) { agent.address = "10.0.0"; }),
      refuse(__LINE__, "the port must be from 1 to 65535, got 0",
             [](Agent& agent) { agent.port = 0; }),
      refuse(__LINE__, "the port must be from 1 to 65535, got 65536",
             [](Agent& agent) { agent.port = 65536; }),
      refuse(__LINE__, "the host has no interface 'eth0'; it has hsk0, hsk1, hsk2",
             [](Agent& agent) { agent.interfaceName = "eth0"; }),
      refuse(__LINE__, "'ab'" + noThumbprint, [](Agent& agent) { agent.certThumbprint = "ab"; }),
      refuse(__LINE__, "'" + kThumbprint + ":00'" + noThumbprint,
             [](Agent& agent) { agent.certThumbprint = kThumbprint + ":00"; }),
      refuse(__LINE__, "the host is not in cluster " + kClusterB,
             [](Agent& agent) { agent.subClusterUuid = kClusterB; }),
      refuse(__LINE__, "a remote agent must name its cluster",
             [](Agent& agent) {
               agent.isWitness = Type::Remote;
               agent.subClusterUuid = "";
             }),
      refuse(__LINE__, "there is a unicast witness already, 10.0.0.9",
             [](Agent& agent) { agent = Witness("10.0.0.8"); }),
      {__LINE__, "host2", [] { Remove(Node()); },
       "there is no node agent " + kNode1 + " at 10.0.0.2 port 12321 of cluster " + kClusterA},
      {__LINE__, "host1",
       [] {
         Remove(NodeBut([](Agent& agent) {
           agent.isWitness = Type::Witness;
           agent.subClusterUuid = "";
         }));
       },
       "there is no witness agent " + kNode1 + " at 10.0.0.2 port 12321"},
      {__LINE__, "host1", [] { Agents("all"); }, NotUuid("all")},
  });
}

TEST_F(AgentTest, OneWitnessForEachClusterOfASharedHost) {
  StandOn("host2");
  JoinWitness(kClusterA, "host1");
  Add(Witness("10.0.0.9"));
  Add(Witness("10.0.0.9", ""));
  EXPECT_THAT(HostControl()->GetUnicastWitnesses(), ElementsAre("10.0.0.9", "10.0.0.9"));
}

class AgentEntryTest : public testing::Test {
 protected:
  static std::string Fault(const std::string& entry, bool strict = true) {
    return Failure([&] { KorelUtil::KorelUnicastAddressInfoFromString(entry, strict); });
  }

  /// The entry of Node() with one part in the place of another.
  static std::string Replaced(const std::string& part, const std::string& by) {
    std::string entry = Entry(Node());
    return entry.replace(entry.find(part), part.size(), by);
  }
};

TEST_F(AgentEntryTest, BadEntriesAreRefusedSayingWhy) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "'' is not of the form key=value"},
      {Entry(Node()) + ";", "'' is not of the form key=value"},
      {Entry(Node()) + ";port=1", "the key 'port' is there twice"},
      {Entry(Node()) + ";x=1", "there is no key 'x'"},
      {Replaced(";port=12321", ""), "the key 'port' is missing"},
      {Replaced("port=12321", "port=0"), "the port must be from 1 to 65535, got 0"},
      {Replaced("port=12321", "port=012321"),
       "port must be a number from 0 to 65535, got '012321'"},
      {Replaced("type=0", "type=4"), "type must be a number from 0 to 3, got '4'"},
      {Replaced("unicast=1", "unicast=true"), "unicast must be a number from 0 to 1, got 'true'"},
      {Replaced("addr=10.0.0.2", "addr=host2"), "'host2' is neither an IPv4 nor an IPv6 address"},
      {Replaced(kNode1, "x"), NotUuid("x")},
      {Replaced("iface=", "iface=a%2"), "no two hexadecimal digits follow the % in 'a%2'"},
      {Replaced("iface=", "iface=%+1"), "no two hexadecimal digits follow the % in '%+1'"},
  };
  for (const auto& [entry, message] : cases) EXPECT_EQ(Fault(entry), message) << entry;
  EXPECT_EQ(Fault(Entry(Node()) + ";x=1", false), "") << "unknown keys are left out";
}

/// Random agents and entries, the same for the same seed.
class Dice {
 public:
  explicit Dice(unsigned seed) : engine_(seed) {}

  std::uint64_t Below(std::uint64_t end) { return engine_() % end; }
  std::string Bytes(std::size_t maxSize) {
    std::string bytes(Below(maxSize + 1), '\0');
    for (char& byte : bytes) byte = static_cast<char>(Below(256));
    return bytes;
  }
  std::string Uuid() { return KorelUtil::KorelUuidToString({engine_(), engine_()}); }
  std::string Address() {
    std::string text;
    const bool isV6 = Below(2) == 1;
    for (int i = 0; i < (isV6 ? 8 : 4); ++i) {
      if (!text.empty()) text += isV6 ? ':' : '.';
      text += std::to_string(Below(Below(2) == 1 ? 256 : 2));
    }
    return text;
  }
  Agent AnyAgent() {
    return lab::CheckedAgent({Uuid(), static_cast<Type>(Below(4)), Below(2) == 1, Address(),
                              static_cast<std::int64_t>(1 + Below(65535)), Bytes(12),
                              Below(2) == 1 ? kThumbprint : "", Uuid()});
  }

 private:
  std::mt19937_64 engine_;
};

TEST_F(AgentEntryTest, EveryAgentComesBackFromItsEntry) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE(Tovrin::Misc::StrCat("seed ", std::to_string(seed)));
  Dice dice(seed);
  for (int i = 0; i < 2000; ++i) {
    const Agent agent = dice.AnyAgent();
    const std::string entry = Entry(agent);
    EXPECT_EQ(entry.find_first_of(std::string("\0\n\" \xff", 5)), std::string::npos) << entry;
    const Agent read = KorelUtil::KorelUnicastAddressInfoFromString(entry, true);
    ASSERT_EQ(Entry(read), entry);
    ASSERT_EQ(read.interfaceName, agent.interfaceName) << entry;
  }
}

TEST_F(AgentEntryTest, SpoiltEntriesAreReadAsAnAgentOrRefused) {
  const unsigned seed = std::random_device()();
  SCOPED_TRACE(Tovrin::Misc::StrCat("seed ", std::to_string(seed)));
  Dice dice(seed);
  for (int i = 0; i < 2000; ++i) {
    std::string entry = Entry(dice.AnyAgent());
    entry.replace(dice.Below(entry.size()), dice.Below(6), dice.Bytes(3));
    try {
      const Agent read = KorelUtil::KorelUnicastAddressInfoFromString(entry, true);
      ASSERT_EQ(Entry(lab::CheckedAgent(read)), Entry(read)) << entry;
    } catch (const Tovrin::Lib::Korel::KorelCtlException& refusal) {
      ASSERT_NE(refusal.GetMessage(), "") << entry;
    }
  }
}

}  // namespace
}  // namespace lab_test
