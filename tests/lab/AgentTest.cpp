#include "lab/model/AgentRecord.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using lab::Agent;
using lab::AgentEntry;
using AgentTest = ClustersTest;

/// The agents of a host and a cluster, all of them or those that support unicast.
Texts Agents(const std::string& number, const std::string& cluster = "-", bool all = true) {
  std::vector<Agent> agents;
  At("host" + number)->GetUnicastAgents(agents, all, Long(cluster));
  Texts texts;
  for (const Agent& agent : agents) {
    texts.push_back(lab::AgentTypeName(agent.isWitness) + " " + Short(agent.nodeUuid) + " " +
                    agent.address + " " + std::to_string(agent.port));
    if (agent.subClusterUuid != kZeros) texts.back() += " " + Short(agent.subClusterUuid);
  }
  return texts;
}

TEST_F(AgentTest, AreTheHostsOwnInTheOrderOfAddingAndTheirOneForm) {
  ASSERT_EQ(
      Play("1 agent node n2 2001:0:0:1:0:0:0:1 12321 A multicast; "
           "1 agent metadata ABCDEF67-89ab-4000-8000-000000000001 FE80:0:0:0:0:0:0:1 65535 A; "
           "1 agent witness zeros 1:0:0:0:0:0:0:0 1 A; 1 agent remote n2 10.0.0.2 7 D; "
           "1 agent node n1 2001:0:0:1:1:0:0:1 8; 1 agent witness n1 ::FFFF:1.2.3.4 1"),
      "");
  const Texts all = {"node n2 2001:0:0:1::1 12321 A",
                     "metadata abcdef67-89ab-4000-8000-000000000001 fe80::1 65535 A",
                     "witness zeros 1:: 1 A",
                     "remote n2 10.0.0.2 7 D",
                     "node n1 2001::1:1:0:0:1 8",
                     "witness n1 ::ffff:1.2.3.4 1"};
  const auto part = [&](int from, int to) { return Texts(all.begin() + from, all.begin() + to); };
  EXPECT_EQ(Agents("1"), all);
  EXPECT_EQ(Agents("1", "AAAAAAAA-0000-4000-8000-000000000001"), part(0, 3));
  EXPECT_EQ(Agents("1", "-", false), part(1, 6));
  EXPECT_EQ(Agents("1", "zeros"), part(4, 6));
  EXPECT_EQ(Agents("2"), Texts());
  EXPECT_EQ(At("host1")->GetUnicastWitnesses(), (Texts{"1::", "::ffff:1.2.3.4"}));
  EXPECT_EQ(HostControl()->GetUnicastAgentEntries(kClusterA).size(), 3U);
  EXPECT_EQ(Play("2 leave A"), "");
  EXPECT_EQ(Agents("1"), all);
  EXPECT_EQ(Play("1 leave A"), "");
  EXPECT_EQ(Agents("1"), part(3, 6)) << "the others went with their cluster";
}

TEST_F(AgentTest, RemovalTakesTheVeryUuidFirstAndThenTheOneAddedFirst) {
  ASSERT_EQ(Play("1 agent witness n2 10.0.0.9 1; 1 agent witness zeros 10.0.0.9 1 A; "
                 "1 agent node n2 10.0.0.9 1; 1 agent node n1 10.0.0.9 1; "
                 "1 agent node n1 10.0.0.9 1 A; 1 agent node n1 10.0.0.9 2; "
                 "1 agent node n1 10.0.0.8 1; 2 agent node n1 10.0.0.9 1"),
            "");
  const Texts before = Agents("1");
  const auto removed = [&] {
    const Texts after = Agents("1");
    std::string gone;
    for (const std::string& agent : before) {
      if (std::find(after.begin(), after.end(), agent) == after.end()) gone += agent;
    }
    return gone;
  };
  Expect(removed, R"(
1 unagent node n1 10.0.0.9 1 A / 1 unagent node zeros 10.0.0.9 1 A -> node n1 10.0.0.9 1 A
1 unagent node n1 10.0.0.9 1 zeros / 1 unagent node n1 10.0.0.9 1 -> node n1 10.0.0.9 1
1 unagent node zeros 10.0.0.9 1    -> node n2 10.0.0.9 1
1 unagent node zeros 10.0.0.9 2    -> node n1 10.0.0.9 2
1 unagent node n1 10.0.0.8 1       -> node n1 10.0.0.8 1
1 unagent witness zeros 10.0.0.9 1 -> witness zeros 10.0.0.9 1 A
1 unagent witness n2 10.0.0.9 1    -> witness n2 10.0.0.9 1
2 unagent node n1 10.0.0.9 1       ->
)");
}

TEST_F(AgentTest, AnEncryptedClusterTakesAgentsWithAThumbprint) {
  Expect([] { return Agents("1").back(); }, R"(
1 encrypt A on SETTLED; 1 agent node n1 ::1 1 A - - thumb / 3 encrypt B on SETTLED; 1 agent node n1 ::1 1 A -> node n1 ::1 1 A
1 encrypt A on SETTLED; 1 agent remote n1 ::1 1 D - - thumb -> remote n1 ::1 1 D
)");
  Expect([] { return Short(HostControl()->GetUnicastAgentEntries("").front()); }, R"(
1 agent node n1 10.0.0.2 12321 A - hsk1 thumb -> uuid=n1;type=0;unicast=1;addr=10.0.0.2;port=12321;iface=hsk1;thumbprint=thumb;cluster=A
)");
}

TEST_F(AgentTest, UnicastModeNeedsANodeAgentAndAllOfThemToSupportIt) {
  const auto mode = [] {
    bool isUnicast = true;
    StandOn("host1");
    KorelUtil::GetUnicastModeForCluster(isUnicast, kClusterA);
    return std::string(isUnicast ? "unicast" : "multicast");
  };
  Expect(mode, R"(
                                                              -> multicast
1 agent node n1 10.0.0.2 1 A; 1 agent node n2 10.0.0.3 1 A multicast / 1 agent node n1 10.0.0.2 1 A multicast; 1 agent node n2 10.0.0.3 1 A -> multicast
1 agent metadata n1 10.0.0.2 1 A / 1 agent node n1 10.0.0.2 1 -> multicast
1 agent node n1 10.0.0.2 1 A / 1 agent node n1 10.0.0.2 1 A; 1 agent witness zeros 10.0.0.9 1 A multicast -> unicast
1 agent node n1 10.0.0.2 1 A; 1 agent metadata n2 10.0.0.9 1 A multicast / 1 agent node n1 10.0.0.2 1 A; 1 agent node n2 10.0.0.3 1 - multicast -> unicast
1 agent node n1 10.0.0.2 1 A; 2 agent node n2 10.0.0.3 1 A multicast -> unicast
)");
}

TEST_F(AgentTest, Refusals) {
  ExpectRefusals(R"(
1 agent node n1 ::1 7 A; 1 agent node n1 ::1 7 A multicast -> there is a node agent n1 at ::1 port 7 already; 'korel cluster unicastagent remove' takes it away
1 agent node n1 0:0::1 7; 1 agent node n1 ::1 7 -> there is a node agent n1 at ::1 port 7 already; 'korel cluster unicastagent remove' takes it away
1 agent node zeros 10.0.0.2 1 A / 1 agent metadata zeros 10.0.0.2 1 A / 1 agent remote zeros 10.0.0.2 1 B -> a ... agent must have a UUID, by --uuid
1 agent node #host1 ::1 1 A / 1 agent witness #host1 ::1 1 A -> agent UUID ... is this host's own; 'korel cluster get' on another host shows that one's
1 agent node n1 0.0.0.0 1 / 1 agent node n1 :: 1 / 1 agent node n1 0:0::0 1 / 1 agent node n1 224.0.0.0 1 / 1 agent node n1 239.255.255.255 1 / 1 agent node n1 ff02::1 1 -> no host has the address ...
1 agent node n1 255.255.255.255 1 / 1 agent node n1 ::ffff:224.0.0.1 1 -> no host has the address ...: it is...
1 encrypt A on SETTLED; 1 agent node n1 ::1 1 A / 1 encrypt A on SETTLED; 2 agent remote n1 ::1 1 D -> cluster A is encrypted, and an agent needs a thumbprint then, by --cert-thumbprint
2 encrypt A on SETTLED; 5 agent remote n1 ::1 1 A / 2 encrypt A on SETTLED; 1 agent witness n1 ::1 1 -> cluster A is encrypted...
1 agent x n1 10.0.0.2 1 A              -> there is no agent type -1
1 agent node n1 1.2.3 1 / 1 agent node n1 1.2.3.256 1 / 1 agent node n1 01.2.3.4 1 / 1 agent node n1 1.2.3.4%20 1 / 1 agent node n1 ::: 1 / 1 agent node n1 1::2::3 1 -> '... address
1 agent node n1 12345:: 1 / 1 agent node n1 ::1%25lo 1 / 1 agent node n1 - 1 -> '... address
1 agent node n1 10.0 1 A               -> '10.0' is neither an IPv4 nor an IPv6 address
1 agent node n1 10.0.0.2 0 A / 1 agent node n1 10.0.0.2 65536 A -> the port must be from 1 to 65535...
1 agent node n1 ::1 1 A unicast eth0   -> the host has no interface 'eth0'; it has hsk0, hsk1, hsk2
1 agent node n1 ::1 1 A unbound eth0; 1 agent node n1 ::1 1 A unbound eth0 -> there is a ... already; ...
1 agent remote n1 10.0.0.2 1           -> a remote agent must name its cluster, by --cluster-uuid
1 agent node n1 10.0.0.2 1 B / 1 agent witness n1 10.0.0.2 1 B -> the host is not in cluster B; ...
1 reboot; 1 agent node n1 10.0.0.2 1 A -> the host is not in cluster A now; ...
1 agent witness n2 ::1 1 A; 1 agent witness n1 ::2 1 A -> there is a unicast witness already, ::1; 'korel cluster unicastagent remove --type witness --addr ::1 --port 1' removes it
1 agent witness n2 ::1 1; 1 agent witness n1 ::2 1 -> there is a unicast witness already, ::1; ...
2 agent node n1 ::1 7 A; 1 unagent node n1 ::1 7 -> there is no node agent n1 at ::1 port 7; 'korel cluster unicastagent list' shows those there are
1 unagent witness zeros FE80:0::1 7    -> there is no witness agent at FE80:0::1 port 7; ...
1 unagent node zeros ::1 7 CCCCCCCC-0000-4000-8000-000000000003 -> there is no node agent at ::1 port 7 of cluster CCCCCCCC-0000-4000-8000-000000000003; ...
1 agent witness zeros FE80:0::1 7; 1 unagent node zeros FE80:0::1 7 -> there is no node agent at FE80:0::1 port 7; there is a witness agent at fe80::1; 'korel cluster unicastagent remove --type witness --addr fe80::1 --port 7' removes it
1 agent remote n1 ::1 7 D; 1 unagent metadata n1 ::1 7 -> there is no metadata agent...; there is a remote agent at ::1...
1 agent witness zeros ::1 1; 1 agent witness zeros ::1 1 -> there is a witness agent at ::1 port 1 already; ...
1 agent node n1 ::1 7 A; 1 unagent node n2 ::1 7 / 1 agent node n1 ::1 7 A; 1 unagent node n1 ::2 7 / 1 agent node n1 ::1 7 A; 1 unagent witness n1 ::1 7 -> there is no ... port 7; ...
1 agent node n1 ::1 7 A; 1 unagent node n1 ::1 7 B -> there is no ... port 7 of cluster B; ...
1 agent node n1 ::1 1 - - - ab         -> 'ab' is no SHA-1 thumbprint: 20 bytes of two...
1 agent node n1 ::1 1 - - - 01:23:45:67:89:AB:CD:EF:01:23:45:67:89:ab:cd:ef:01:23:45:67: -> 'thumb:' is no SHA-1...
1 agent node n1 ::1 1 - - - 01:23:45:67:89:AB:CD:EF:01:23:45:67:89:ab:cd:ef:01:23:45:6g -> '0...
1 agent node n1 ::1 1 - - - 01:23:45:67-89:AB:CD:EF:01:23:45:67:89:ab:cd:ef:01:23:45:67 -> '0...
1 agent node n1 ::1 1 - - - 23:45:67:89:AB:CD:EF:01:23:45:67:89:ab:cd:ef:01:23:45:67 -> '2...
)");
}

/// A node agent of cluster A as an entry.
std::string Entry() {
  return AgentEntry({Long("n1"), Tovrin::Korel::KorelUnicastAgentType::Node, true, "10.0.0.2",
                     12321, "", "", kClusterA});
}

TEST(AgentEntryTest, EveryByteAndTypeComesBackFromAnEntryOfAnyOrder) {
  const std::string plain = "-.0123456789:ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz";
  for (int byte = 0; byte < 256; ++byte) {
    const std::string name(1, static_cast<char>(byte));
    const std::string kept =
        plain.find(name) != std::string::npos ? name : Tovrin::Misc::StrPrintf("%%%02X", byte);
    const std::string type = std::to_string(byte % 4);
    const Agent agent = KorelUtil::KorelUnicastAddressInfoFromString(
        "cluster=" + kClusterA + ";iface=" + kept +
            ";thumbprint=;port=1;addr=::1;unicast=0;type=" + type + ";uuid=" + Long("n1"),
        true);
    EXPECT_EQ(agent.interfaceName, name);
    EXPECT_EQ(static_cast<int>(agent.isWitness), byte % 4);
    EXPECT_EQ(AgentEntry(agent), "uuid=" + Long("n1") + ";type=" + type + ";unicast=0;addr=::1;" +
                                     "port=1;iface=" + kept + ";thumbprint=;cluster=" + kClusterA);
  }
}

TEST(AgentEntryTest, BadEntriesAreRefusedSayingWhy) {
  const std::string notUuid =
      "'x' is not a UUID of the form \"nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn\"";
  const std::string percent = "no two hexadecimal digits follow the % in ";
  const std::array<std::string, 3> cases[] = {
      {kClusterA, kClusterA + ";", "'' is not of the form key=value"},
      {kClusterA, kClusterA + ";port=1", "the key 'port' is there twice"},
      {kClusterA, kClusterA + ";x=1", "there is no key 'x'"},
      {";port=12321", "", "the key 'port' is missing"},
      {"port=12321", "port=012321", "port must be a number from 0 to 65535, got '012321'"},
      {"port=12321", "port=0", "the port must be from 1 to 65535, got 0"},
      {"type=0", "type=4", "type must be a number from 0 to 3, got '4'"},
      {"unicast=1", "unicast=2", "unicast must be a number from 0 to 1, got '2'"},
      {Long("n1"), "x", notUuid},
      {kClusterA, "x", notUuid},
      {"iface=", "iface=%+1", percent + "'%+1'"},
      {"iface=", "iface=%4g", percent + "'%4g'"},
      {"iface=", "iface=%4", percent + "'%4'"},
  };
  for (const auto& [part, by, message] : cases) {
    std::string entry = Entry();
    entry.replace(entry.find(part), part.size(), by);
    const auto read = [&] { KorelUtil::KorelUnicastAddressInfoFromString(entry, true); };
    EXPECT_EQ(Failure(read), message) << entry;
  }
  const Agent lenient = KorelUtil::KorelUnicastAddressInfoFromString(Entry() + ";x=1", false);
  EXPECT_EQ(AgentEntry(lenient), Entry()) << "unknown keys are left out";
}

}  // namespace
}  // namespace lab_test
