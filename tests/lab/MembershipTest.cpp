#include <map>

#include "lab/model/ClusterFacts.h"
#include "lab/model/Clusters.h"
#include "lab/model/HostState.h"
#include "platform/hostctl/Optional.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using Tovrin::Korel::KorelPolicyClass;
using MembershipTest = ClustersTest;

/// The hosts that take part in the cluster by their numbers, with their roles, in the order of
/// joining: "1 MASTER, 2 BACKUP". Expects that each of them sees the same.
std::string Members(const std::string& cluster) {
  std::map<std::string, std::string> roles;
  Texts order;
  for (const lab::Host& host : lab::ReadLab(lab::AllHosts)) {
    const auto joined = At(host.name)->GetJoinedClusterUuids();
    if (std::find(joined.begin(), joined.end(), Long(cluster)) == joined.end()) continue;
    Tovrin::Korel::KorelClusterInfoDetailed info;
    KorelUtil::GetInfoFromHXDS(Long(cluster), info);
    EXPECT_EQ(info.clusterUuid, Long(cluster));
    EXPECT_TRUE(order.empty() || order == info.memberUuids) << host.name;
    order = info.memberUuids;
    roles[host.nodeUuid] = host.name.substr(4) + " " + info.nodeRole;
  }
  std::string members;
  for (const std::string& node : order) members += ", " + roles[node];
  return members.substr(std::min<std::size_t>(2, members.size()));
}

/// The configuration generation of each cluster: "A 3, B 1".
std::string Generations() {
  return lab::ReadLab([](lab::Store& store) {
    std::string generations;
    for (const lab::Cluster& cluster : lab::AllClusters(store)) {
      const auto [number, time] = lab::ConfigGeneration(store, cluster.id);
      EXPECT_THAT(time, testing::MatchesRegex("....-..-..T..:..:..[+-]..:.."));
      generations += ", " + Short(cluster.uuid) + " " + std::to_string(number);
    }
    return generations.substr(2);
  });
}

/// What host N says of its own part: "korel witness A B", with what a restore would add: "(C)".
std::string PartOf(const std::string& number) {
  const auto host = At("host" + number);
  const auto joined = host->GetJoinedClusterUuids();
  EXPECT_EQ(host->GetClusterUuid(), joined.empty() ? kZeros : joined.front());
  std::string part = host->GetClusterInfo(true)->enabled ? "korel"
                     : host->IsClientModeEnabled()       ? "client"
                                                         : "none";
  part += std::array{" normal", " witness", " metadata"}.at(
      static_cast<std::size_t>(KorelUtil::GetNodeType()));
  for (const std::string& uuid : joined) part += " " + Short(uuid);
  for (const std::string& uuid : GetInactiveClusterUuids(*host)) part += " (" + Short(uuid) + ")";
  return part;
}

/// All that host N has which something could take back.
std::string HeldBy(const std::string& number) {
  const auto host = At("host" + number);
  std::string held = PartOf(number) + ";";
  std::vector<KorelUtil::KorelInfo::KorelUnicastAddressInfo> agents;
  host->GetUnicastAgents(agents, true, "");
  for (const auto& agent : agents) held += " " + agent.address.substr(agent.address.rfind('.'));
  for (const auto& config : host->GetHsknicConfigs()) held += " " + config->GetHsknicName();
  return held + " " + host->GetFaultDomainName() + (IsKorelMaxEnabled(*host) ? " max " : " ") +
         host->GetDefaultPolicy(KorelPolicyClass::VmSwap).substr(0, 8) + " " +
         std::to_string(host->GetResyncThrottle()) + " " +
         std::to_string(host->GetResyncBandwidth()) + " " +
         host->GetClusterInfo(true)->maintenanceState;
}

TEST_F(MembershipTest, RolesFollowTheOrderOfJoining) {
  Expect([] { return Members("A"); }, R"(
                                         -> 1 MASTER, 2 BACKUP, 6 WITNESS
5 join A / 5 join A metadata / 5 join A; 1 reboot; 1 restore -> 1 MASTER, 2 BACKUP, 6 WITNESS, 5 AGENT
5 join A; 1 leave A / 5 join A; 1 reboot -> 2 MASTER, 6 WITNESS, 5 BACKUP
5 join A; 1 leave A; 1 join A            -> 2 MASTER, 6 WITNESS, 5 BACKUP, 1 AGENT
5 join A; 1 reboot; 2 reboot             -> 6 WITNESS, 5 MASTER
2 type metadata; 5 join A                -> 1 MASTER, 2 AGENT, 6 WITNESS, 5 BACKUP
1 type metadata                          -> 1 AGENT, 2 MASTER, 6 WITNESS
6 type normal                            -> 1 MASTER, 2 BACKUP, 6 AGENT
6 reboot                                 -> 1 MASTER, 2 BACKUP
)");
  Expect([] { return Members("B") + " | " + Members("C"); }, R"(
6 join B witness host3; 5 client C -> 3 MASTER, 6 WITNESS | 4 AGENT, 5 AGENT
5 join B metadata; 3 leave B     -> 5 AGENT | 4 AGENT
)");
  Expect([] { return Members("D"); }, R"(
5 join D / 5 join DDDDDDDD-0000-4000-8000-000000000004 -> 5 MASTER
5 join D metadata                -> 5 AGENT
5 join D witness any / 6 join D witness any -> ... WITNESS
5 join D witness any; 3 leave B; 3 join D -> 5 WITNESS, 3 MASTER
)");
}

TEST_F(MembershipTest, EachMemberSaysWhatItIs) {
  Expect([] { return PartOf("1") + ", " + PartOf("4") + ", " + PartOf("5") + ", " + PartOf("6"); },
         R"(
5 join A metadata -> korel normal A, client normal C, korel metadata A, korel witness A
6 join B witness host3; 6 leave A; 5 client D -> korel normal A, client normal C, client normal D, korel witness B
6 join B witness host3; 6 reboot -> korel normal A, client normal C, none normal, none normal (A) (B)
6 join B witness host3; 1 leave A; 4 reboot -> none normal, none normal (C), none normal, korel witness A B
)");
}

TEST_F(MembershipTest, HealthFollowsFromDisksMaintenanceAndAbsentMembers) {
  const auto health = [] {
    StandOn("host1");
    Tovrin::Korel::KorelClusterInfoDetailed info;
    KorelUtil::GetInfoFromHXDS(kClusterA, info);
    return info.nodeHealth;
  };
  ASSERT_EQ(Play("1 claim mpx.dkhba0:C0:T1:L0 mpx.dkhba2:C0:T1:L0; 1 pool mpx.dkhba1:C0:T2:L0"),
            "");
  Expect(health, R"(
                                                 -> HEALTHY
1 sick mpx.dkhba2:C0:T2:L0 / 2 maintain / 2 leave A; 6 leave A / 3 reboot -> HEALTHY
1 sick mpx.dkhba2:C0:T1:L0 / 1 sick mpx.dkhba0:C0:T1:L0 / 1 sick mpx.dkhba1:C0:T2:L0 -> DISK UNHEALTHY
1 unmountgroup mpx.dkhba0:C0:T1:L0 force         -> DISK UNMOUNTED
1 maintain                                       -> IN MAINTENANCE
2 reboot / 6 reboot                              -> MEMBERS ABSENT
2 reboot; 2 restore / 1 maintain; 1 cancel       -> HEALTHY
1 sick mpx.dkhba2:C0:T1:L0; 1 maintain; 2 reboot -> DISK UNHEALTHY, IN MAINTENANCE, MEMBERS ABSENT
)");
}

TEST_F(MembershipTest, WhatARebootARestoreAndLeavingTakeBack) {
  ASSERT_EQ(Play("1 agent node n1 10.0.0.2 1 A; 1 agent node n1 10.0.0.3 1; "
                 "1 agent remote n2 10.0.0.4 1 B; 1 interface hsk0 korel; "
                 "1 interface hsk2 witness; 1 domain east; 1 policy vmswap copies=4; 1 max on; "
                 "1 throttle 7; 1 rate 5; 1 maintain"),
            "");
  Expect([] { return HeldBy("1"); }, R"(
                               -> korel normal A; .2 .3 .4 hsk0 hsk2 east max copies=4 7 5 ENTERING
2 reboot; 2 clearnet; 2 leave A; 1 restore -> korel normal A; .2 .3 .4 hsk0 hsk2 east max copies=4 7 5 ENTERING
1 reboot / 1 reboot; 1 reboot; 2 restore; 2 restorenet -> none normal (A); .2 .3 .4 east max copies=4 7 5 OFF
1 reboot; 1 restore / 1 reboot; 1 restore boot / 1 reboot; 1 restore postboot / 1 reboot; 1 restore boot; 1 restore postboot -> korel normal A; .2 .3 .4 east max copies=4 7 5 OFF
1 reboot; 1 restorenet         -> none normal (A); .2 .3 .4 hsk0 hsk2 east max copies=4 7 5 OFF
1 reboot; 1 leave A; 1 restore -> none normal; .3 .4 east copies=4 7 5 OFF
1 clearnet; 2 restorenet       -> korel normal A; .2 .3 .4 east max copies=4 7 5 ENTERING
1 clearnet; 1 restorenet; 1 cancel -> korel normal A; .2 .3 .4 hsk0 hsk2 east max copies=4 7 5 OFF
1 leave A                      -> none normal; .3 .4 hsk0 hsk2 east copies=4 7 5 ENTERING
1 leave A; 1 reboot; 1 restore; 1 restorenet -> none normal; .3 .4 hsk0 hsk2 east copies=4 7 5 OFF
1 domain; 1 unpolicy; 1 max off; 1 throttle 0 -> korel normal A; .2 .3 .4 hsk0 hsk2 host1 copies=2 0 5 ENTERING
)");
  Expect([] { return HeldBy("5"); }, R"(
5 rate 1000000; 5 throttle 512                         -> none normal; host5 copies=2 512 512 OFF
5 rate 700; 5 throttle 512; 5 throttle 0; 1 throttle 1 -> none normal; host5 copies=2 0 700 OFF
1 restore; 1 restorenet                                -> none normal; host5 copies=2 0 0 OFF
5 join A; 5 reboot; 1 restore; 1 restorenet            -> none normal (A); host5 copies=2 0 0 OFF
5 create D once; 5 agent node n1 ::1 1 D; 5 max on; 5 reboot / 5 create D once; 5 agent node n1 ::1 1 D; 5 max on; 5 restore -> none normal; host5 copies=2 0 0 OFF
)");
  Expect([] { return HeldBy("6"); }, R"(
6 join B witness host3; 6 max on; 6 leave A            -> korel witness B; host6 max copies=2 0 0 OFF
6 join B witness host3; 6 max on; 6 leave A; 6 leave B -> none normal; host6 copies=2 0 0 OFF
6 join B witness host3; 6 reboot; 6 restore            -> korel witness A B; host6 copies=2 0 0 OFF
)");
}

TEST_F(MembershipTest, WhatCountsAsAChangeOfACluster) {
  // Cluster B has datastore 1, which A mounts.
  ASSERT_EQ(Play("3 add d1 export; 1 add d1 far B; 6 join B witness host3"), "");
  Expect(Generations, R"(
                                                                 -> A 4, B 3, C 1
6 type witness / 1 domain east; 1 domain; 1 throttle 1; 1 rate 1; 1 maintain / 1 agent node n1 10.0.0.2 1 A; 1 interface hsk0 korel; 1 clearnet -> A 4, B 3, C 1
1 policy vmem copies=1; 1 max on                                 -> A 4, B 3, C 1
5 create D / 5 join D                                            -> A 4, B 3, C 1, D 1
5 join A / 2 type metadata; 2 type metadata / 6 leave A / 1 remove d1 / 6 prefer A host2; 6 prefer A host2 / 1 rekey A 1440; 1 rekey A 30; 2 rekey A 30 -> A 5, B 3, C 1
5 join A; 5 leave A / 5 join A metadata; 5 type normal / 2 type metadata; 2 type normal / 1 add d2 other; 1 clear; 2 clear -> A 6, B 3, C 1
2 encrypt A on SETTLED; 1 encrypt A on SETTLED; 1 encrypt A off SETTLED -> A 6, B 3, C 1
5 client C / 4 add d1 far B                                      -> A 4, B 3, C 2
4 reboot; 4 restore                                              -> A 4, B 3, C 3
6 reboot                                                         -> A 5, B 4, C 1
6 reboot; 6 reboot; 2 restore; 6 restore; 6 restore postboot     -> A 6, B 5, C 1
1 remove d1; 3 leave B; 6 leave B                                -> A 5, C 1
3 add d2 other / 3 rename d1 renamed; 3 rename d1 renamed        -> A 4, B 4, C 1
3 rename - renamed; 3 rename - default / 3 add d2 other; 3 remove d2 -> A 4, B 5, C 1
5 create D once; 1 add n1 here; 5 add n1 mine A; 4 add n1 mine A; 5 reboot -> A 5, B 3, C 2
)");
}

TEST_F(MembershipTest, Refusals) {
  ExpectRefusals(R"(
1 create D / 1 join B / 1 join B witness host3 / 1 client C / 6 client C -> the host is in cluster A; it leaves that one first by 'korel cluster leave --cluster-uuid A'
1 join A / 6 join A witness host1 -> the host is in cluster A already; 'korel cluster get'...
6 join B / 6 join B metadata -> the host is a witness of cluster A and can join others only...
1 reboot; 1 join B -> the host's persisted configuration has it in cluster A; it leaves that one first by 'korel cluster restore' and then 'korel cluster leave --cluster-uuid A'
1 reboot; 1 join A -> the host is in cluster A already, though not active there; 'korel cluster restore' restores its membership
6 reboot; 6 join B witness host3 -> the host's persisted configuration has it in cluster A; ...
5 join A witness host1 / 2 type witness -> cluster A has a witness, host 'host6'; that one leaves by 'korel cluster leave --cluster-uuid A'
6 reboot; 5 join A witness host1 / 6 reboot; 1 type witness -> cluster A has a witness, host 'host6'; that one leaves by 'korel cluster restore' and then...
1 restore boot postboot -> a restore is for one stage of a boot at most
5 create CCCCCCCC-0000-4000-8000-000000000003 -> cluster UUID C is taken
5 create zeros / 5 client zeros -> the UUID of all zeros stands for none and cannot be used
5 create x       -> 'x' is not a UUID of the form "nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn"
5 create - / 5 create 01234567-89ab-cdef-fedc-ba98765432100 / 5 create 0123456789abcdeffedcba9876543210---- / 5 create 01234567-89ab-cdef-fedc-ba987654321g -> '...' is not a UUID of the form...
5 join zeros     -> the UUID of all zeros stands for none and cannot be used
5 join C         -> cluster C is a client cluster; --client-mode joins it
5 client A       -> cluster A is not a client cluster; ...
3 add d1 ds; 1 add d1 far B; 3 leave B -> datastore 'ds' is mounted by cluster A; that ends by 'korel datastore remove --uuid d1' there
4 add dB far B; 3 reboot; 3 leave B -> datastore 'default' is mounted by client cluster C; that ends by 'korel cluster leave' on each client host
4 add dB far B; 1 add dB far B; 3 leave B -> datastore 'default' is mounted by cluster A, client cluster C; that ends by '...' there and 'korel cluster leave' on each client host
5 join A metadata host1 -> only a witness names a preferred fault domain, by --witness-node
5 join B witness -> a witness must name its preferred fault domain, by...
5 leave A / 1 reboot; 1 leave A; 1 leave A / 3 encrypt A on SETTLED / 3 rekey A 60 -> the host is not in cluster A; 'korel cluster list' shows...
1 reboot; 1 encrypt A on SETTLED -> the host is not in cluster A now; 'korel cluster restore' restores its membership
1 reboot; 1 encrypt zeros on SETTLED -> the host is in no cluster now; 'korel cluster restore' restores its membership
5 rekey zeros 60 -> the host is in no cluster; 'korel cluster join' or 'korel cluster new' puts it in one
6 leave D        -> the host is not in cluster D; ...
5 type normal    -> host 'host5' is in no cluster; 'korel cluster join' or...
1 reboot; 1 type metadata -> host 'host1' is in no cluster now; 'korel cluster restore' restores its membership (with KOREL_LAB_HOST=host1)
4 type witness   -> host 'host4' is in client cluster C and has no node type; ...
6 join B witness host3; 6 type normal -> host 'host6' is in several clusters, which only...
5 max on         -> Korel is not enabled on this host: it is in no cluster; 'korel cluster join' or...
1 reboot; 1 max on -> Korel is not enabled on this host: it is in no cluster now; 'korel cluster restore' restores its membership
4 max on         -> Korel is not enabled on this host: it is in client cluster C, which it leaves by...
1 encrypt A on settled -> the state of encryption must be SETTLED, got 'settled'
1 rekey A 29 / 1 rekey A 10081 -> the rekey interval in minutes must be from 30 to 10080...
1 throttle -1 / 1 throttle 513 -> the resync throttle in Mbps must be from 0 to 512...
1 rate 1000001   -> the resync rate in Mbps must be from 0 to 1000000, got 1000001
2 maintain; 1 cancel -> no maintenance mode operation is in progress; 'autocli lab maintenance start' starts one
1 maintain; 1 maintain -> a maintenance mode operation is in progress already; 'korel maintenancemode cancel' ends it
9 reboot         -> KOREL_LAB_HOST names no host of the lab: 'host9'; the hosts are host1, host2...
)");
}

TEST_F(MembershipTest, EncryptionIsTheClusters) {
  const auto encryption = [] {
    std::string all;
    for (const char* cluster : {"A", "B", "D", "zeros"}) {
      const char* host = cluster[0] == 'A' ? "host2" : "host3";
      const std::string failure =
          Failure([&] { all += std::to_string(At(host)->GetRekeyInterval(Long(cluster), false)); });
      all += failure.empty() ? "" : "none";
      all += At("host5")->IsDataInTransitEncryptionEnabled(Long(cluster), true) ? "* " : " ";
    }
    return all;
  };
  Expect(encryption, R"(
1 encrypt A on SETTLED; 1 encrypt A off SETTLED -> 1440 1440 none none...
2 encrypt A on SETTLED; 1 rekey A 30            -> 30* 1440 none none...
3 rekey B 10080; 3 reboot; 3 restore            -> 1440 10080 none none...
3 reboot; 1 encrypt A on SETTLED                -> 1440* none none none...
)");
}

using HostStateTest = RowsTest;

TEST_F(HostStateTest, PoliciesAreEachHostsOwnSetPerClassAndClearedTogether) {
  AddHostsUpTo(2);
  const std::string standard = "copies=2,stripes=1,reserved-percent=0,checksum=on";
  const std::string full = "copies=2,stripes=1,reserved-percent=100,checksum=on";
  // A plus and a percent sign stand for what is built in.
  const auto policies = [&] {
    std::string all;
    for (const auto policyClass : KorelUtil::GetKorelPolicyClasses()) {
      const std::string policy = At("host1")->GetDefaultPolicy(policyClass);
      all += (all.empty() ? "" : " ") + (policy == standard ? "+" : policy == full ? "%" : policy);
    }
    return all;
  };
  Expect(policies, R"(
                                                      -> + + + % %
2 policy vdisk copies=1 / 1 policy vmswap copies=1; 1 policy vmnamespace copies=1; 1 unpolicy / 1 policy vmswap copies=1; 1 policy vdisk copies=2; 1 unpolicy vmswap -> + + + % %
1 policy vmswap copies=1; 2 unpolicy vmswap; 1 unpolicy vdisk -> + + + copies=1,stripes=1,reserved-percent=100,checksum=on %
1 policy vdisk reserved-percent=100,checksum=off; 2 unpolicy -> + copies=2,stripes=1,reserved-percent=100,checksum=off + % %
1 policy vmem checksum=on,reserved-percent=0          -> + + + % +
1 policy vmnamespace copies=4,stripes=12              -> + + copies=4,stripes=12,reserved-percent=0,checksum=on % %
1 policy vmem checksum=off,copies=1                   -> + + + % copies=1,stripes=1,reserved-percent=100,checksum=off
1 policy cluster copies=1; 1 policy cluster stripes=3 -> copies=2,stripes=3,reserved-percent=0,checksum=on + + % %
)");
  ExpectRefusals(R"(
1 policy vmem -                 -> a policy has at least one pair, such as copies=2; the keys are copies (1 to 4), stripes (1 to 12), reserved-percent (0 to 100), checksum (on or off)
1 policy vmem copies=2,copies / 1 policy vmem copies=2, -> ... it is not of the form key=value; the keys are copies...
1 policy vmem copies=2,Stripes=1 -> ... there is no key 'Stripes'; the keys are copies (1 to 4)..., did you mean 'stripes'?
1 policy vmem copies=2,%20stripes=1 -> ... did you mean 'stripes'?
1 policy vmem mirrors=2         -> ... there is no key 'mirrors'; the keys are copies (1 to 4)...
1 policy vmem copies=2,copies=2 -> the policy pair 'copies=2' is not possible: copies is there twice
1 policy vmem checksum=true / 1 policy vmem checksum= -> ... checksum is on or off
1 policy vmem copies=0 / 1 policy vmem stripes=1,copies=5 -> ... copies is a number from 1 to 4
1 policy vmem stripes=0 / 1 policy vmem stripes=13 -> ... stripes is a number from 1 to 12
1 policy vmem reserved-percent=-1 / 1 policy vmem reserved-percent=101 -> ... number from 0 to 100
1 policy vmem reserved-percent=01 -> ... is a number from 0 to 100
)");
}

TEST_F(HostStateTest, KorelMaxAndDisksInUseExcludeEachOther) {
  MakeHosts("c1 s1 c2 / c1 s1");
  ASSERT_EQ(Play("1 create A; 2 join A"), "");
  ExpectRefusals(R"(
1 claim c1 s1; 1 max on -> the host has disk groups; they must be removed before...: 'korel storage remove --ssd'
1 pool c2; 1 max on     -> the host has disks in its storage pool; they must be removed...: 'korel storagepool remove --disk'
1 max on; 1 claim c1 s1 / 1 max on; 1 pool c2 -> the host has the Korel Max role, with which it takes no disks into use; 'korel cluster korelmax set...
)");
  Expect([] { return ""; }, R"(
2 claim c1 s1; 1 max on; 1 max on ->
1 max on; 1 max off; 1 claim c1 s1; 1 max off; 1 ungroup c1; 1 max on ->
)");
}

}  // namespace
}  // namespace lab_test
