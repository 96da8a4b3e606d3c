#include "tests/support/RecordingHost.h"

namespace test {
namespace {

const std::string kUuid = "5291022a-ad03-df90-dd0f-b9f980cc005e";
const std::string kInClient =
    "error: The host is in a Korel client cluster and enabled for Korel client mode. You need to "
    "remove it from the cluster or disable client mode. | none";

void Enabled(RecordingHost& host) { host.enabled = true; }
void Client(RecordingHost& host) { host.clientMode = true; }
void NoClientFeature(RecordingHost& host) { host.clientModeFeature = false; }
void EnabledWitness(RecordingHost& host) {
  host.enabled = true;
  host.nodeType = Tovrin::Korel::KorelNodeType::Witness;
}
const std::string kChecks = "GetNodeType | GetClusterInfo true | IsClientModeEnabled";

std::string ChecksAnd(const std::string& more) { return kChecks + " | " + more; }

TEST(ClusterJoin, JoinsInEveryRole) {
  std::string longest;
  for (int i = 0; i < 256; ++i) longest += "\xC3\xBC";
  const std::string join = "cluster join -u " + kUuid;
  const std::string call = "JoinCluster " + kUuid;
  Check({
      {join, nullptr, "true", ChecksAnd(call + " 0 \"\" false 0 0")},
      {join + " -w", nullptr, "true", ChecksAnd(call + " 0 \"\" true 0 0")},
      {join + " -m", nullptr, "true", ChecksAnd(call + " 2 \"\" false 0 0")},
      {join + " -wt -p fd1", nullptr, "true", ChecksAnd(call + " 1 fd1 true 0 0")},
      {join + " -t -p " + longest, nullptr, "true",
       ChecksAnd(call + " 1 " + longest + " false 0 0")},
      {join + " -t -p fd1", EnabledWitness, "true", ChecksAnd(call + " 1 fd1 false 0 0")},
      {join + " -wc", nullptr, "true",
       "IsFeatureEnabled 373 | GetNodeType | GetClusterInfo true | IsClientModeEnabled | "
       "JoinClientCluster " +
           kUuid + " false"},
  });
}

TEST(ClusterJoin, RefusesInOrder) {
  const std::string join = "cluster join -u " + kUuid;
  const std::string length =
      "error: Preferred fault domain name cannot be empty or exceed 256 characters. | none";
  const std::string both =
      "error: Both --witness-node and --metadata-node cannot be set at the same time. Specify only "
      "one. | none";
  const std::string notWitnessOrMetadata =
      "error: Client mode is not supported for witness or metadata node | none";
  const std::string onlyWithWitness =
      "error: --witness-preferred-fault-domain is valid only when --witness-node is specified. | "
      "none";
  const std::string withFeature = "IsFeatureEnabled 373 | " + kChecks;
  Check({
      {join + " -ctm", NoClientFeature, "error: Client Mode is not supported. | none",
       "IsFeatureEnabled 373"},
      {join + " -tm", Enabled, both, ""},
      {join + " -t", Enabled,
       "error: The host is in a Korel cluster and not a Korel witness host. You need to remove it "
       "from the cluster or disable Korel. | none",
       "GetNodeType | GetClusterInfo true"},
      {join + " -t", Client, kInClient, kChecks},
      {join + " -ct", nullptr,
       "error: If --witness-node is specified, --witness-preferred-fault-domain must also be "
       "specified. | none",
       withFeature},
      {join + " -t -p ''", nullptr, length, kChecks},
      {join + " -t -p " + std::string(257, 'f'), nullptr, length, kChecks},
      {join + " -ct -p fd1", nullptr, notWitnessOrMetadata, withFeature},
      {join + " -p fd1", nullptr, onlyWithWitness, kChecks},
      {join + " -cm -p ''", nullptr, onlyWithWitness, withFeature},
      {join + " -cm", nullptr, notWitnessOrMetadata, withFeature},
      {"cluster join -u 1", nullptr,
       "error: '1' is not a UUID of the form \"nnnnnnnn-nnnn-nnnn-nnnn-nnnnnnnnnnnn\" | false",
       kChecks},
      {"cluster join", nullptr, "usage: required option \"--cluster-uuid\" is missing", ""},
  });
}

TEST(ClusterJoin, FailuresAnswerFalse) {
  const std::string join = "cluster join -u " + kUuid;
  Check({
      {join, Failing("GetNodeType"), "error: no luck | false", "GetNodeType"},
      {join, Failing("JoinCluster"), "error: no luck | false",
       ChecksAnd("JoinCluster " + kUuid + " 0 \"\" false 0 0")},
      {join, [](RecordingHost& host) { host.hasInfo = false; },
       "error: Could not get KorelInfo. Plugin version mismatch? | false", ""},
  });
}

TEST(ClusterNew, CreatesAndRefuses) {
  const std::string made = "GetClusterInfo true | IsClientModeEnabled | UUID_CreateRandom";
  const auto madeAnd = [&](const std::string& more) { return made + " | " + more; };
  const std::string uuid = "12345678-0000-0000-0000-00000000000a";
  Check({
      {"cluster new", nullptr, "true", madeAnd("CreateCluster " + uuid + " true false")},
      {"cluster new -c", nullptr, "true",
       madeAnd("IsFeatureEnabled 373 | JoinClientCluster " + uuid + " false")},
      {"cluster new -c", NoClientFeature, "error: Client Mode is not supported. | none",
       madeAnd("IsFeatureEnabled 373")},
      {"cluster new", EnabledWitness,
       "error: The host is in a Korel cluster and enabled for Korel. You need to remove it from "
       "the "
       "cluster or disable Korel. | none",
       "GetClusterInfo true"},
      {"cluster new", Client, kInClient, "GetClusterInfo true | IsClientModeEnabled"},
      {"cluster new", [](RecordingHost& host) { host.randomUuid = ""; },
       "error: Unable to generate a UUID | none", made},
      {"cluster new", [](RecordingHost& host) { host.randomUuid = "no uuid"; },
       "error: Unable to generate a UUID | none", made},
      {"cluster new", Failing("CreateCluster"),
       "error: Unable to create the new Korel cluster: no luck | false",
       madeAnd("CreateCluster " + uuid + " true false")},
  });
}

}  // namespace
}  // namespace test
