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
  bool isUnicast = false;
  KorelUtil::GetUnicastModeForCluster(isUnicast, kClusterA);
  EXPECT_TRUE(isUnicast) << "its only node agent supports it";
  Remove(Node());
  EXPECT_THAT(Addresses(), ElementsAre("fe80::1", "10.0.0.9", "10.0.0.3"));
  Leave(kClusterA);
  EXPECT_THAT(Addresses(), ElementsAre("10.0.0.3")) << "the others went with their cluster";
  EXPECT_THAT((StandOn("host2"), Addresses()), IsEmpty());
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
       {but([](Agent& a) { a.nodeUuid = kZeros; }), "a node agent must have a UUID"},
       {but([](Agent& a) { a.address = "10.0"; }), "'10.0' is neither an IPv4 nor an IPv6 address"},
       {but([](Agent& a) { a.port = 0; }), "the port must be from 1 to 65535, got 0"},
       {but([](Agent& a) { a.interfaceName = "eth0"; }),
        "the host has no interface 'eth0'; it has hsk0, hsk1, hsk2"},
       {but([](Agent& a) { a.certThumbprint = "ab"; }), "'ab'" + noThumbprint},
       {[] {
          Add({kNode1, Type::Remote, true, "10.0.0.2", 1, "", "", ""});
        },
        "a remote agent must name its cluster"},
       {[] { Add(Witness("10.0.0.8")); }, "there is a unicast witness already, 10.0.0.9"},
       {[] {
          Remove({kNode1, Type::Witness, true, "10.0.0.2", 12321, "", "", ""});
        },
        "there is no witness agent " + kNode1 + " at 10.0.0.2 port 12321"}});
}

TEST(AgentEntryTest, AnyInterfaceNameComesBackFromAnEntry) {
  const Agent agent = NodeBut([](Agent& a) { a.interfaceName = "a;b=%\n\xff"; });
  const std::string entry = AgentEntry(agent);
  EXPECT_EQ(entry.find('\n'), std::string::npos) << entry;
  const Agent read = KorelUtil::KorelUnicastAddressInfoFromString(entry, true);
  EXPECT_EQ(read.interfaceName, agent.interfaceName);
  EXPECT_EQ(AgentEntry(read), entry);
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
      {"port=12321", "port=012321", "port must be a number from 0 to 65535, got '012321'"},
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

}  // namespace
}  // namespace lab_test
