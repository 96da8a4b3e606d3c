#include "tests/e2e/Program.h"

namespace test {
namespace {

using nlohmann::json;

const std::string kThumbprint = "00:01:02:03:04:05:06:07:08:09:0a:0b:0c:0d:0e:0f:10:11:12:13";

/// The values of one field of a list.
std::vector<std::string> Column(const json& document, const std::string& field) {
  std::vector<std::string> values;
  for (const json& row : document["result"]) values.push_back(row[field]);
  return values;
}

class Scenario : public Lab {
 protected:
  std::string OwnCluster() const { return Ask("korel cluster get")["result"]["Sub-Cluster UUID"]; }
  std::string NodeUuid() const { return Ask("korel cluster get")["result"]["Node UUID"]; }
};

TEST_F(Scenario, AStretchedClusterAndItsSharedWitness) {
  for (const std::string host : {"host2", "host3", "witness"}) Do("lab host add --name " + host);
  EXPECT_EQ(Ask("korel cluster get")["result"]["Enabled"], false);
  Fails("korel cluster leave", "The host is not in a Korel or client cluster.");

  Do("korel cluster new");
  const std::string first = OwnCluster();
  Do("korel faultdomain set -n east");
  const std::string node1 = NodeUuid();
  On("host2");
  Do("korel cluster join -w -u " + first);
  Do("korel faultdomain set -n west");
  const std::string node2 = NodeUuid();
  EXPECT_EQ(Ask("korel cluster get")["result"]["Member Count"], 2);
  EXPECT_EQ(Ask("korel cluster get")["result"]["Node Role"], "BACKUP");
  On("host3");
  Do("korel cluster new");
  const std::string second = OwnCluster();

  On("host1");
  Do("korel cluster unicastagent add -t node -U true -a 10.0.0.2 -u " + node2);
  On("host2");
  Do("korel cluster unicastagent add -t node -U true -a 10.0.0.1 -u " + node1);
  EXPECT_EQ(Column(Ask("korel cluster unicastagent list"), "NodeUuid"),
            std::vector<std::string>{node1});
  Fails("korel cluster preferredfaultdomain get",
        "Cannot get preferred fault domain if host is not in a stretched cluster.");

  On("witness");
  EXPECT_EQ(Run("korel cluster join -t -p north -u " + first).status, 1);
  Do("korel cluster join -t -p east -u " + first);
  Do("korel cluster preferredfaultdomain set -n west");
  EXPECT_EQ(Ask("korel cluster preferredfaultdomain get")["result"]["Preferred Fault Domain Name"],
            "west");
  Do("korel cluster join -t -p third -u " + second);
  EXPECT_EQ(Column(Ask("korel cluster list"), "Sub-Cluster UUID"),
            (std::vector<std::string>{first, second}));
  Fails("korel cluster unicastagent add -a 10.0.0.3",
        "Please specify the cluster uuid for shared witness host.");
  On("host1");
  EXPECT_EQ(Ask("korel cluster preferredfaultdomain get")["result"]["Preferred Fault Domain Name"],
            "west");

  // The second leave fails: the first cluster stays left.
  On("witness");
  environment["KOREL_LAB_CALLS"] = folder + "/calls";
  Do("korel cluster leave -u " + first);
  Do("korel cluster join -t -p east -u " + first);
  Do("lab fault add --operation LeaveCluster --message broken --count 1");
  Fails("korel cluster leave -u " + second, "broken");
  EXPECT_EQ(Column(Ask("korel cluster list"), "Sub-Cluster UUID"),
            (std::vector<std::string>{second, first}));
  Do("korel cluster leave");
  EXPECT_EQ(Ask("korel cluster list")["result"].size(), 0U);

  On("host2");
  Do("lab host reboot");
  EXPECT_EQ(Ask("korel cluster get")["result"]["Enabled"], false);
  Do("korel cluster restore");
  EXPECT_EQ(OwnCluster(), first);
}

TEST_F(Scenario, ANetworkIsConfiguredEncryptedClearedAndRestored) {
  Do("korel cluster new");
  Do("korel network ip add -i hsk0");
  Do("korel network ip add -i hsk1 -T witness -t 7 -p 1000 -d 224.9.9.9");
  const json before = Ask("korel network list")["result"];
  Do("korel network ip set -i hsk1 -o 2000");
  json after = Ask("korel network list")["result"];
  EXPECT_EQ(after[1]["Master Group Multicast Port"], 2000);
  after[1]["Master Group Multicast Port"] = before[1]["Master Group Multicast Port"];
  EXPECT_EQ(after, before);
  EXPECT_EQ(Column(Ask("korel network list"), "Traffic Type"),
            (std::vector<std::string>{"korel", "witness"}));

  Do("korel network security set -e true -r 60");
  EXPECT_EQ(Ask("korel network security get")["result"]["Rekey Interval (in minutes)"], 60);
  EXPECT_EQ(Ask("korel network list")["result"][0]["Data-in-Transit Encryption Key Exchange Port"],
            12443);
  Fails("korel cluster unicastagent add -a 10.0.0.1",
        "Error: cert-thumbprint is required to enable Korel data-in-transit encryption.");
  Do("korel cluster unicastagent add -a 10.0.0.1 -T " + kThumbprint);
  Do("korel network security set -r 10080");
  EXPECT_EQ(Run("korel network security set -r 29").status, 1);
  Do("korel network security set -e false");
  Do("korel cluster unicastagent add -t node -U true -u 5291022a-ad03-df90-dd0f-b9f980cc005e -a "
     "10.0.0.2");
  Fails("korel network security set -e true",
        "Can not enable Data-in-transit encryption because thumbprint is not provided for host "
        "10.0.0.2 (5291022a-ad03-df90-dd0f-b9f980cc005e)");
  EXPECT_EQ(Ask("korel network security get")["result"]["Rekey Interval (in minutes)"], 10080);

  const json configured = Ask("korel network list");
  Do("korel network clear");
  EXPECT_EQ(Ask("korel network list")["result"].size(), 0U);
  Do("korel network restore");
  EXPECT_EQ(Ask("korel network list"), configured);
  Do("korel network ip remove -i hsk1");
  EXPECT_EQ(Column(Ask("korel network list"), "HskNic Name"), std::vector<std::string>{"hsk0"});
  EXPECT_EQ(Run("korel network remove -i hsk1").out, "false\n");
  Do("korel network remove -i hsk1 -f");
}

TEST_F(Scenario, StorageIsTaggedClaimedRebuiltAndGivenBack) {
  Do("korel cluster new");
  std::vector<std::string> caches, flash, spinning;
  const json disks = Ask("lab disk list")["result"];
  for (const json& disk : disks) {
    auto& group = disk["Fit For"] == "cache" ? caches : disk["Is SSD"] ? flash : spinning;
    group.push_back(disk["Device"]);
  }
  EXPECT_EQ(Run("korel storage add -s " + caches[0] + " -d " + caches[1]).status, 1);
  Do("korel storage tag add -t capacityFlash -d " + caches[1]);
  Do("korel storage add -s " + caches[0] + " -d " + caches[1] + " -d " + spinning[0] + " -d " +
     spinning[1]);
  const auto isMounted = [&](const std::string& device) -> bool {
    return Ask("korel storage list -d " + device)["result"][0]["Is Mounted"];
  };
  Do("korel storage diskgroup unmount -s " + caches[0] + " -m NoAction");
  EXPECT_FALSE(isMounted(spinning[0]));
  Do("korel storage diskgroup mount -s " + caches[0]);
  EXPECT_TRUE(isMounted(spinning[0]));

  const std::string rebuild = "korel storage diskgroup rebuild -s " + caches[0] + " -t fullDisk";
  EXPECT_EQ(Run(rebuild).out, "Rebuild succeeded.\n");
  Do("lab disk set --device " + spinning[1] + " --healthy false");
  EXPECT_EQ(Run(rebuild).status, 1);
  EXPECT_EQ(Run(rebuild + " --force").out,
            "Rebuild succeeded. Ignored the unhealthy disk: " + spinning[1] + "\n");
  Do("lab disk set --device " + spinning[1] + " --healthy true");

  Do("korel storage remove -d " + spinning[1] + " -m evacuateAllData");
  EXPECT_EQ(Ask("korel storage list")["result"].size(), 3U);
  Do("korel storage remove -s " + caches[0]);
  EXPECT_EQ(Ask("korel storage list")["result"].size(), 0U);
  Do("korel storagepool add -d " + flash[0]);
  EXPECT_EQ(Column(Ask("korel storagepool list"), "Device"), std::vector<std::string>{flash[0]});
  EXPECT_EQ(Run("korel storage add -s " + caches[0] + " -d " + flash[0]).status, 1);
  Do("korel storagepool remove -d " + flash[0] + " -m noAction");
}

TEST_F(Scenario, TraceSettingsAreChangedAndShown) {
  Do("korel trace set -s 100 -f 3 -l false -p /vol/traces");
  const json shown = Ask("korel trace get")["result"];
  EXPECT_EQ(shown["KOREL Traces Directory"], "/vol/traces");
  EXPECT_EQ(shown["Maximum Trace File Size"], 100);
  EXPECT_EQ(shown["Number Of Files To Rotate"], 3);
  EXPECT_EQ(shown["Log Urgent Traces To Syslog"], false);
  EXPECT_EQ(Run("korel trace get --fields").status, 2);
  EXPECT_EQ(RunWords({"korel", "trace", "set", "-p", "/a\"b"}).status, 1);
  EXPECT_EQ(Ask("korel trace get")["result"], shown);
  Do("lab daemon stop");
  Fails("korel trace get", "Korel is not enabled on this host.");
  Do("korel trace set -r true");
  Do("lab daemon start");
  EXPECT_EQ(Ask("korel trace get")["result"]["Number Of Files To Rotate"], 8);
}

}  // namespace
}  // namespace test
