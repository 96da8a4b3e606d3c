#include "tests/support/RecordingHost.h"

namespace test {
namespace {

using Tovrin::Korel::KorelUnicastAgentType;

const std::string kNone = "00000000-0000-0000-0000-000000000000";

/// The calls of "add" up to the type, which asks for the metadata feature unless it is a node's.
std::string Begun(const std::string& more = "") {
  return "GetJoinedClusterUuids | GetClusterUuid | IsDataInTransitEncryptionEnabled own true" +
         (more.empty() ? "" : " | " + more);
}
void Own(RecordingHost& host) { host.clusterUuid = "own"; }
void Encrypted(RecordingHost& host) {
  Own(host);
  host.encryption = true;
}
void NoMetadata(RecordingHost& host) {
  Own(host);
  host.metadataFeature = false;
}
std::function<void(RecordingHost&)> Witnesses(const std::vector<std::string>& witnesses) {
  return [witnesses](RecordingHost& host) {
    Own(host);
    host.witnesses = witnesses;
  };
}

TEST(UnicastAgentAdd, AddsEveryType) {
  const std::string feature = "IsKorelMetadataNodeFeatureEnabled";
  const std::string add = "cluster unicastagent add -a 10.0.0.1";
  Check({
      {add, Own, "true",
       Begun("GetUnicastWitnesses | AddUnicastAgent " + kNone +
             " 1 false 10.0.0.1 12321 false \"\" \"\" \"\" own")},
      {add + " -t node -u n1 -U true -p 5 -i hsk1 -T ab:cd", Own, "true",
       Begun("AddUnicastAgent n1 0 true 10.0.0.1 5 true hsk1 \"\" ab:cd own | RefreshUnicastAgents "
             "\"\"")},
      {add + " -t metadata -u m1 -i ''", Own, "true",
       Begun(feature + " | AddUnicastAgent m1 2 false 10.0.0.1 12321 true \"\" \"\" \"\" own")},
      {add + " -t metadata -u m1", NoMetadata, "true",
       Begun(feature + " | GetUnicastWitnesses | AddUnicastAgent m1 1 false 10.0.0.1 12321 false "
                       "\"\" \"\" \"\" own")},
      {"cluster unicastagent add -a fe80::1 -t remote -u r1 -c far", Own, "true",
       "IsDataInTransitEncryptionEnabled far true | " + feature +
           " | AddUnicastAgent r1 3 true fe80::1 12321 false \"\" \"\" \"\" far"},
      {add + " -T ''", Encrypted, "true",
       Begun("GetUnicastWitnesses | AddUnicastAgent " + kNone +
             " 1 false 10.0.0.1 12321 false \"\" \"\" \"\" own")},
  });
}

TEST(UnicastAgentAdd, RefusesInOrder) {
  const std::string feature = "IsKorelMetadataNodeFeatureEnabled";
  const std::string add = "cluster unicastagent add -a 10.0.0.1";
  const auto shared = [](RecordingHost& host) { host.joinedClusters = {"a", "b"}; };
  Check({
      {"cluster unicastagent add -a nonsense", shared,
       "error: Please specify the cluster uuid for shared witness host. | none",
       "GetJoinedClusterUuids"},
      {"cluster unicastagent add -t node -a nonsense", Own,
       "error: Can not add unicastagent without specifying node-uuid | none", Begun()},
      {"cluster unicastagent add -t node -u n1 -a nonsense", Own,
       "error: Can not add unicastagent without specifying unicast support | none", Begun()},
      {"cluster unicastagent add -a 10.0.0.256", Encrypted,
       "error: Invalid IP address 10.0.0.256 | none", Begun()},
      {add, Encrypted,
       "error: Error: cert-thumbprint is required to enable Korel data-in-transit encryption. | "
       "none",
       Begun()},
      {add, Witnesses({"w1"}),
       "error: Korel does not support connecting to more than one unicast witness, and there is "
       "already a unicast witness configured: w1. | none",
       Begun("GetUnicastWitnesses")},
      {add, Witnesses({"w1", "w2"}),
       "error: Korel does not support connecting to more than one unicast witness, and there are "
       "already multiple unicast witnesses configured: w1,w2. | none",
       Begun("GetUnicastWitnesses")},
      {add + " -t remote -u r1", Own,
       "error: Can not add remote server node without specifying cluster uuid | none",
       Begun(feature)},
      {add + " -c own", Failing("AddUnicastAgent"), "error: no luck | none",
       "IsDataInTransitEncryptionEnabled own true | GetUnicastWitnesses | AddUnicastAgent " +
           kNone + " 1 false 10.0.0.1 12321 false \"\" \"\" \"\" own"},
      {add + " -t Node", Own,
       "usage: option \"--type\" takes one of \"witness\", \"node\", \"metadata\", \"remote\", not "
       "\"Node\", did you mean \"node\"?",
       ""},
  });
}

TEST(UnicastAgentRemove, RemovesANodeUnlessTold) {
  const std::string remove = "cluster unicastagent remove -a 10.0.0.1";
  const auto stale = [](RecordingHost& host) {
    host.agentRemoved = false;
    host.clientMode = true;
  };
  Check({
      {remove, nullptr, "true",
       "IsClientModeEnabled | RemoveUnicastAgent " + kNone + " 10.0.0.1 12321 0 0 \"\" false"},
      {remove + " -t metadata -u m1 -p 7 -c own", stale, "true",
       "IsClientModeEnabled | RemoveUnicastAgent m1 10.0.0.1 7 2 0 own true | RefreshUnicastAgents "
       "\"\""},
      {"cluster unicastagent remove -a 1.2.3", nullptr, "error: Invalid IP address 1.2.3 | none",
       ""},
      {remove, Failing("RemoveUnicastAgent"),
       "error: Unable to remove the unicast agent: no luck | none",
       "IsClientModeEnabled | RemoveUnicastAgent " + kNone + " 10.0.0.1 12321 0 0 \"\" false"},
  });
}

TEST(UnicastAgentClear, RemovesRecordsAndStoredEntriesOnce) {
  const std::string asked =
      "IsClientModeEnabled | GetClusterInfo true | GetNodeType | GetUnicastAgents true \"\"";
  const std::string both = asked + " | GetUnicastAgentEntries \"\"";
  const auto prepare = [](RecordingHost& host) {
    host.enabled = true;
    host.agents = {{"n1", KorelUnicastAgentType::Node, true, "10.0.0.1", 5, "", "", "own"},
                   {"stored", KorelUnicastAgentType::Node, false, "10.0.0.2", 0, "", "", ""},
                   {"stored", KorelUnicastAgentType::Node, false, "10.0.0.3", 6, "", "", ""}};
    host.agentEntries = {"10.0.0.2", "10.0.0.3"};
  };
  const auto witness = [prepare](RecordingHost& host) {
    prepare(host);
    host.nodeType = Tovrin::Korel::KorelNodeType::Witness;
    host.agentEntries.clear();
  };
  const auto badEntry = [prepare](RecordingHost& host) {
    prepare(host);
    host.agentEntries.push_back("bad one");
  };
  const auto badAddress = [prepare](RecordingHost& host) {
    prepare(host);
    host.agents[1].address = "nonsense";
  };
  const auto enabled = [](RecordingHost& host) { host.enabled = true; };
  Check({
      {"cluster unicastagent clear", nullptr, "error: Korel isn't enabled on the host | none",
       "IsClientModeEnabled | GetClusterInfo true"},
      {"cluster unicastagent clear", prepare, "true",
       both + " | RemoveUnicastAgent n1 10.0.0.1 5 0 0 \"\" false | RemoveUnicastAgent stored "
              "10.0.0.2 0 0 0 \"\" false | RemoveUnicastAgent stored 10.0.0.3 6 0 0 \"\" false | "
              "RemoveUnicastAgent stored 10.0.0.3 0 0 0 \"\" false | "
              "RefreshUnicastAgents \"\""},
      {"cluster unicastagent clear", witness, "true",
       both + " | RemoveUnicastAgent n1 10.0.0.1 5 0 0 own false | RemoveUnicastAgent stored "
              "10.0.0.2 0 0 0 \"\" false | RemoveUnicastAgent stored 10.0.0.3 6 0 0 \"\" false | "
              "RefreshUnicastAgents \"\""},
      {"cluster unicastagent clear", badEntry,
       "error: Invalid unicastAgent entry \"bad one\". Reason: cannot read it | none", both},
      {"cluster unicastagent clear", badAddress, "error: Invalid IP address nonsense | none", both},
      {"cluster unicastagent clear", Failing("GetUnicastAgents", enabled),
       "error: Unable to remove unicast agents: no luck | none", asked},
  });
}

TEST(UnicastAgentList, ShowsTheTypeAsANumber) {
  const auto one = [](RecordingHost& host) {
    host.agents = {{"r1", KorelUnicastAgentType::Remote, true, "fe80::1", 5, "hsk1", "ab", "far"}};
  };
  const std::string call = "GetUnicastAgents true \"\"";
  Check({
      {"cluster unicastagent list", nullptr, "[]", call},
      {"cluster unicastagent list", one,
       "[UnicastAgentList{NodeUuid=r1, IsWitness=3, Supports Unicast=true, IP Address=fe80::1, "
       "Port=5, Iface Name=hsk1, Cert Thumbprint=ab, SubClusterUuid=far}]",
       call},
      {"cluster unicastagent list", Failing("GetUnicastAgents"),
       "error: Unable to list unicast agent: no luck | none", call},
  });
}

}  // namespace
}  // namespace test
