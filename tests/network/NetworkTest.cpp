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

std::function<void(RecordingHost&)> Configured(const std::string& name, const std::string& type) {
  return [name, type](RecordingHost& host) {
    host.configured = {name + " " + type};
    host.interfaces = {Odd("hsk10"), Odd("hsk1")};
  };
}
const std::string kAsked = "IsHsknicConfigured hsk1 korel | IsHsknicConfigured hsk1 witness";
std::string AskedAnd(const std::string& call) { return kAsked + " | " + call; }

TEST(NetworkIp, AddsWithDefaults) {
  const std::string groups =
      "SetHsknicConfig hsk1 224.2.3.4 v6:FF19:0:0:0:0:2:3:4 224.1.2.3 v6:FF19:0:0:0:0:1:2:3 ";
  const std::string numbers = "23451 12345 12321 5 ";
  const std::string unknownType = "error: Unknown traffic type | none";
  for (const std::string add : {"network ip add -i hsk1", "network ipv4 add -i hsk1"}) {
    Check({
        {add, nullptr, "true", AskedAnd(groups + numbers + "true false \"\"")},
        {add + " -T witness", nullptr, "true", AskedAnd(groups + numbers + "false true \"\"")},
        {add + " -T korel -T witness -T korel", nullptr, "true",
         AskedAnd(groups + numbers + "true true \"\"")},
        {add + " -d 224.9.9.9 -D ff05::1 -u 224.8.8.8 -U ff05::2 -p 1 -o 2 -c 70000 -t -1", nullptr,
         "true",
         AskedAnd(
             "SetHsknicConfig hsk1 224.9.9.9 v6:ff05::1 224.8.8.8 v6:ff05::2 1 2 70000 -1 true "
             "false \"\"")},
        {add + " -T Korel", nullptr, unknownType, kAsked},
        {add + " -T witness -T ''", nullptr, unknownType, kAsked},
        {add + " -d ff05::1", nullptr, "error: 'ff05::1' is not an IPv4 address | none", kAsked},
        {add, Configured("hsk1", "witness"),
         "error: This Hesket network interface is already in use. Can't add again. If you want to "
         "reconfigure, use 'set' command. | none",
         kAsked},
        {add, Failing("SetHsknicConfig"), "error: no luck | none",
         AskedAnd(groups + numbers + "true false \"\"")},
        {add, [](RecordingHost& host) { host.hasInfo = false; },
         "error: Could not get KorelInfo. Plugin version mismatch? | none", ""},
    });
  }
}

TEST(NetworkIp, SetTakesEveryOtherValueFromTheRecord) {
  const std::string set = "network ip set -i hsk1";
  const auto readAnd = [&](const std::string& call) {
    return kAsked + " | GetHsknicConfigs | " + call;
  };
  const std::string call = "SetHsknicConfig hsk1 224.9.9.1 v6:ff02::1 v6:ff02::2 v6:ff02::3 1 2 3 ";
  const auto inUseButGone = [](RecordingHost& host) { host.configured = {"hsk1 korel"}; };
  Check({
      {set + " -t 10", Configured("hsk1", "witness"), "true", readAnd(call + "10 false true \"\"")},
      {set + " -T korel", Configured("hsk1", "witness"), "true",
       readAnd(call + "4 true false \"\"")},
      {set, Configured("hsk2", "korel"),
       "error: This Hesket network interface is not in use. Can't set/reconfigure. If you want to "
       "add, use 'add' command. | none",
       kAsked},
      {set, inUseButGone, "error: This Hesket network interface not found. | none",
       "IsHsknicConfigured hsk1 korel | GetHsknicConfigs"},
  });
}

TEST(Network, RemovesClearsAndRestores) {
  for (const std::string remove : {"network remove -i hsk1", "network ip remove -i hsk1"}) {
    Check({
        {remove, nullptr, "true",
         "RemoveHsknic hsk1 false korel | RemoveHsknic hsk1 false witness"},
        {remove + " -f", nullptr, "true",
         "RemoveHsknic hsk1 true korel | RemoveHsknic hsk1 true witness"},
        {remove, Failing("RemoveHsknic"), "error: no luck | false",
         "RemoveHsknic hsk1 false korel"},
    });
  }
  Check({
      {"network clear", nullptr, "true", "ClearNetworkConfig"},
      {"network clear", Failing("ClearNetworkConfig"), "error: no luck | false",
       "ClearNetworkConfig"},
      {"network restore", nullptr, "true", "RestoreNetworkConfig"},
      {"network restore", Failing("RestoreNetworkConfig"), "error: no luck | false",
       "RestoreNetworkConfig"},
  });
}

TEST(NetworkList, ShowsWhatItHasBesideAnError) {
  const auto row = [](const std::string& name, const std::string& port) {
    return "KorelNetworkList{HskNic Name=" + name + ", IP Protocol=IP, Interface UUID=uuid of " +
           name +
           ", Agent Group Multicast Address=224.9.9.1, Agent Group IPv6 Multicast Address=ff02::1, "
           "Agent Group Multicast Port=1, Master Group Multicast Address=ff02::2, Master Group "
           "IPv6 "
           "Multicast Address=ff02::3, Master Group Multicast Port=2, Host Unicast Channel Bound "
           "Port=3, Data-in-Transit Encryption Key Exchange Port=" +
           port + ", Multicast TTL=4, Traffic Type=";
  };
  const auto two = [](RecordingHost& host) {
    host.interfaces = {Odd("hsk1"), Odd("hsk2")};
    host.interfaces[0].korelTraffic = true;
    host.clusterUuid = "own";
  };
  const auto encrypted = [two](RecordingHost& host) {
    two(host);
    host.encryption = true;
    host.interfaces[1].witnessTraffic = false;
  };
  const std::string asked =
      "GetHsknicConfigs | GetClusterUuid | IsDataInTransitEncryptionEnabled own true";
  Check({
      {"network list", [](RecordingHost& host) { host.clusterUuid = "own"; }, "[]", asked},
      {"network list", two,
       "[" + row("hsk1", "-") + "korel, witness}, " + row("hsk2", "-") + "witness}]", asked},
      {"network list", encrypted,
       "[" + row("hsk1", "12443") + "korel, witness}, " + row("hsk2", "12443") + "}]", asked},
      {"network list", Failing("GetClusterUuid"), "error: no luck | []",
       "GetHsknicConfigs | GetClusterUuid"},
  });
}

TEST(NetworkSecurity, IsReadPerCluster) {
  const auto two = [](RecordingHost& host) {
    host.clusterUuid = "own";
    host.joinedClusters = {"own", "other"};
    host.encryption = true;
    host.number = 60;
  };
  const auto record = [](const std::string& type, const std::string& uuid) {
    return type + "{Sub-Cluster UUID=" + uuid +
           ", Data-in-Transit Encryption status=true, Rekey Interval (in minutes)=60}";
  };
  const std::string joined = "GetJoinedClusterUuids";
  const auto of = [](const std::string& uuid) {
    return "IsDataInTransitEncryptionEnabled " + uuid + " true | GetRekeyInterval " + uuid +
           " true";
  };
  Check({
      {"network security get", two, record("NetworkSecurityGet", "own"),
       "GetClusterUuid | " + of("own")},
      {"network security get -u other", two, record("NetworkSecurityGet", "other"),
       joined + " | " + of("other")},
      {"network security get -u Own", two, "error: Unable to find subcluster UUID: Own | none",
       joined},
      {"network security get", Failing("GetClusterUuid"),
       "error: Unable to get data-in-transit encryption status: no luck | none", "GetClusterUuid"},
      {"network security list", nullptr, "[]", joined},
      {"network security list", two,
       "[" + record("KorelNetworkSecurityList", "own") + ", " +
           record("KorelNetworkSecurityList", "other") + "]",
       joined + " | " + of("own") + " | " + of("other")},
      {"network security list", Failing("GetJoinedClusterUuids"), "error: no luck | none", joined},
  });
}

void AddAgent(RecordingHost& host, const std::string& uuid, const std::string& thumbprint) {
  RecordingHost::KorelInfo::KorelUnicastAddressInfo agent;
  agent.nodeUuid = uuid;
  agent.address = "10.0.0.1";
  agent.certThumbprint = thumbprint;
  host.agents.push_back(agent);
}

TEST(NetworkSecurity, SetChecksTheAgentsFirst) {
  const std::string set = "network security set";
  const auto in = [](const std::vector<std::string>& clusters) {
    return [clusters](RecordingHost& host) {
      host.enabled = true;
      host.clusterUuid = "own";
      host.joinedClusters = clusters;
    };
  };
  const auto bareAgent = [in](RecordingHost& host) {
    in({"own"})(host);
    AddAgent(host, "good", "ab");
    AddAgent(host, "bare", "");
  };
  const std::string asked = "GetClusterInfo true | GetUnicastAgents true \"\"";
  const auto askedAnd = [&](const std::string& more) { return asked + " | " + more; };
  const std::string joined = "GetJoinedClusterUuids";
  Check({
      {set, nullptr, "error: Korel Clustering is not enabled on this host | none",
       "GetClusterInfo true"},
      {set + " -e false", bareAgent,
       "error: Can not enable Data-in-transit encryption because thumbprint is not provided for "
       "host "
       "10.0.0.1 (bare) | none",
       asked},
      {set + " -e true", in({"own", "other"}),
       "error: Please specify the cluster uuid for shared witness host. | none", askedAnd(joined)},
      {set + " -u nobody", in({"own"}), "error: Unable to find subcluster UUID: nobody | none",
       askedAnd(joined)},
      {set, in({}), "true", askedAnd(joined + " | GetClusterUuid")},
      {set + " -e yes -r 5", in({"own"}), "true",
       askedAnd(joined + " | GetClusterUuid | SetDataInTransitEncryption own true SETTLED 0 | "
                         "SetRekeyInterval own 5")},
      {set + " -u other -r -7", in({"own", "other"}), "true",
       askedAnd(joined + " | SetRekeyInterval other -7")},
      {set + " -e 0 -r 5", Failing("SetRekeyInterval", in({"own"})),
       "error: Unable to config data in transit encryption: no luck | none",
       askedAnd(joined + " | GetClusterUuid | SetDataInTransitEncryption own false SETTLED 0 | "
                         "SetRekeyInterval own 5")},
  });
}

}  // namespace
}  // namespace test
