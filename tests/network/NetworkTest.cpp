#include "tests/support/RecordingHost.h"

namespace test {
namespace {

using Tovrin::Korel::KorelHskNicConfig2;
using Tovrin::Korel::KorelIpAddress;

KorelIpAddress V4(const std::string& text) {
  return {false, Tovrin::Network::Ipv4Address(text), {}, text};
}
KorelIpAddress V6(const std::string& text) {
  return {true, {}, Tovrin::Network::Ipv6Address(text), text};
}

/// An interface of which every value differs from the defaults; one group is in the wrong slot.
KorelHskNicConfig2 Odd(const std::string& name) {
  KorelHskNicConfig2 config(name, V4("224.9.9.1"), V6("ff02::1"), V6("ff02::2"), V6("ff02::3"), 1,
                            2, 3, 4, false, true, "");
  config.SetIfaceUuid("uuid of " + name);
  return config;
}

const Hosts kHosts = {
    {"hsk1",
     [](RecordingHost& host) {
       host.configured = {"hsk1 witness"};
       host.interfaces = {Odd("hsk10"), Odd("hsk1")};
     }},
    {"hsk2", [](RecordingHost& host) { host.configured = {"hsk2 korel"}; }},
    {"hsk1 is gone", [](RecordingHost& host) { host.configured = {"hsk1 korel"}; }},
    {"own", [](RecordingHost& host) { host.joinedClusters = {host.clusterUuid = "own"}; }},
    {"shared",
     [](RecordingHost& host) {
       host.joinedClusters = {host.clusterUuid = "own", "other"};
       host.encryption = true;
       host.number = 60;
     }},
};
const Names kNames = {{"$asked", "IsHsknicConfigured hsk1 korel | IsHsknicConfigured hsk1 witness"},
                      {"$set", "SetHsknicConfig hsk1"}};

TEST(NetworkIp, AddsWithDefaults) {
  for (const std::string add : {"network ip add -i hsk1", "network ipv4 add -i hsk1"}) {
    Names names = kNames;
    names["$add"] = add;
    names["$standard"] =
        "SetHsknicConfig hsk1 224.2.3.4 v6:FF19:0:0:0:0:2:3:4 224.1.2.3 v6:FF19:0:0:0:0:1:2:3 "
        "23451 12345 12321 5";
    Check(kHosts, names, R"(
$add -> true <- $asked | $standard true false ""
! error: no luck | none
$add -T witness -> true <- $asked | $standard false true ""
$add -T korel -T witness -T korel -> true <- $asked | $standard true true ""
$add -d 224.9.9.9 -D ff05::1 -u 224.8.8.8 -U ff05::2 -p 1 -o 2 -c 70000 -t -1 -> true <- $asked |
  $set 224.9.9.9 v6:ff05::1 224.8.8.8 v6:ff05::2 1 2 70000 -1 true false ""
$add -T Korel / $add -T witness -T '' -> error: Unknown traffic type | none <- $asked
$add -d ff05::1 -> error: 'ff05::1' is not an IPv4 address | none <- $asked
[hsk1] $add -> error: This Hesket network interface is already in use. Can't add again. If you want to reconfigure, use 'set' command. | none <- $asked
)");
  }
}

TEST(NetworkIp, SetTakesEveryOtherValueFromTheRecord) {
  Check(kHosts, kNames, R"(
[hsk1] network ip set -i hsk1 -t 10 -> true <- $asked | GetHsknicConfigs | $set 224.9.9.1 v6:ff02::1 v6:ff02::2 v6:ff02::3 1 2 3 10 false true ""
[hsk1] network ip set -i hsk1 -T korel -> true <- $asked | GetHsknicConfigs | $set 224.9.9.1 v6:ff02::1 v6:ff02::2 v6:ff02::3 1 2 3 4 true false ""
[hsk2] network ip set -i hsk1 -> error: This Hesket network interface is not in use. Can't
  set/reconfigure. If you want to add, use 'add' command. | none <- $asked
[hsk1 is gone] network ip set -i hsk1 -> error: This Hesket network interface not found. | none <- IsHsknicConfigured hsk1 korel | GetHsknicConfigs
)");
}

TEST(Network, RemovesClearsAndRestores) {
  Check(R"(
network remove -i hsk1 / network ip remove -i hsk1 -> true <- RemoveHsknic hsk1 false korel | RemoveHsknic hsk1 false witness
[RemoveHsknic fails] network remove -i hsk1 / [RemoveHsknic fails] network ip remove -i hsk1 -> error: no luck | false <- RemoveHsknic hsk1 false korel
network remove -i hsk1 -f / network ip remove -i hsk1 -f -> true <- RemoveHsknic hsk1 true korel | RemoveHsknic hsk1 true witness
network clear -> true <- ClearNetworkConfig
! error: no luck | false
network restore -> true <- RestoreNetworkConfig
! error: no luck | false
)");
}

TEST(NetworkList, ShowsWhatItHasBesideAnError) {
  Hosts hosts = kHosts;
  hosts["two"] = [](RecordingHost& host) {
    host.interfaces = {Odd("hsk1"), Odd("hsk2")};
    host.interfaces[0].korelTraffic = true;
  };
  hosts["encrypted"] = [](RecordingHost& host) {
    host.encryption = true;
    host.interfaces[1].witnessTraffic = false;
  };
  const auto row = [](const std::string& name, const std::string& port) {
    return "KorelNetworkList{HskNic Name=" + name + ", IP Protocol=IP, Interface UUID=uuid of " +
           name +
           ", Agent Group Multicast Address=224.9.9.1, Agent Group IPv6 Multicast Address=ff02::1, "
           "Agent Group Multicast Port=1, Master Group Multicast Address=ff02::2, Master Group "
           "IPv6 Multicast Address=ff02::3, Master Group Multicast Port=2, Host Unicast Channel "
           "Bound Port=3, Data-in-Transit Encryption Key Exchange Port=" +
           port + ", Multicast TTL=4, Traffic Type=";
  };
  const Names names = {
      {"$open1", row("hsk1", "-")},
      {"$open2", row("hsk2", "-")},
      {"$secret1", row("hsk1", "12443")},
      {"$secret2", row("hsk2", "12443")},
      {"$asked", "GetHsknicConfigs | GetClusterUuid | IsDataInTransitEncryptionEnabled own true"}};
  Check(hosts, names, R"(
[own] network list -> [] <- $asked
[own, two] network list -> [$open1korel, witness}, $open2witness}] <- $asked
[own, two, encrypted] network list -> [$secret1korel, witness}, $secret2}] <- $asked
[GetClusterUuid fails] network list -> error: no luck | [] <- GetHsknicConfigs | GetClusterUuid
)");
}

TEST(NetworkSecurity, IsReadPerCluster) {
  const auto of = [](const std::string& uuid) {
    return "IsDataInTransitEncryptionEnabled " + uuid + " true | GetRekeyInterval " + uuid +
           " true";
  };
  const Names names = {
      {"$state", "Data-in-Transit Encryption status=true, Rekey Interval (in minutes)=60"},
      {"$own", of("own")},
      {"$other", of("other")}};
  Check(kHosts, names, R"(
[shared] network security get -> NetworkSecurityGet{Sub-Cluster UUID=own, $state} <- GetClusterUuid | $own
[shared] network security get -u other -> NetworkSecurityGet{Sub-Cluster UUID=other, $state} <- GetJoinedClusterUuids | $other
[shared] network security get -u Own -> error: Unable to find subcluster UUID: Own | none <- GetJoinedClusterUuids
network security list -> [] <- GetJoinedClusterUuids
! error: no luck | none
[shared] network security list -> [KorelNetworkSecurityList{Sub-Cluster UUID=own, $state},
  KorelNetworkSecurityList{Sub-Cluster UUID=other, $state}] <- GetJoinedClusterUuids | $own | $other
)");
}

TEST(NetworkSecurity, SetChecksTheAgentsFirst) {
  Hosts hosts = kHosts;
  hosts["bare agent"] = [](RecordingHost& host) {
    host.agents.resize(2);
    host.agents[0].certThumbprint = "ab";
    host.agents[1].nodeUuid = "bare";
    host.agents[1].address = "10.0.0.1";
  };
  hosts["alone"] = [](RecordingHost& host) { host.clusterUuid = "own"; };
  const Names names = {{"$set", "network security set"},
                       {"$asked", "GetClusterInfo true | GetUnicastAgents true \"\""},
                       {"$encrypt", "SetDataInTransitEncryption own"}};
  Check(hosts, names, R"(
$set -> error: Korel Clustering is not enabled on this host | none <- GetClusterInfo true
[enabled, own, bare agent] $set -e false -> error: Can not enable Data-in-transit encryption because
  thumbprint is not provided for host 10.0.0.1 (bare) | none <- $asked
[enabled, shared] $set -e true -> error: Please specify the cluster uuid for shared witness host. | none <- $asked | GetJoinedClusterUuids
[enabled, own] $set -u nobody -> error: Unable to find subcluster UUID: nobody | none <- $asked | GetJoinedClusterUuids
[enabled, alone] $set -> true <- $asked | GetJoinedClusterUuids | GetClusterUuid
[enabled, own] $set -e yes -r 5 -> true <- $asked | GetJoinedClusterUuids | GetClusterUuid | $encrypt true SETTLED 0 | SetRekeyInterval own 5
[enabled, shared] $set -u other -r -7 -> true <- $asked | GetJoinedClusterUuids | SetRekeyInterval other -7
[enabled, own] $set -e 0 -r 5 -> true <- $asked | GetJoinedClusterUuids | GetClusterUuid | $encrypt false SETTLED 0 | SetRekeyInterval own 5
)");
}

}  // namespace
}  // namespace test
