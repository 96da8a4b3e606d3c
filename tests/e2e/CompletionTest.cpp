#include <algorithm>
#include <sstream>

#include "tests/e2e/Program.h"

namespace test {

using nlohmann::json;

/// host1 has all that can be had, host2 another cluster, host3 nothing, host4 a client cluster.
class PreparedLab : public Lab {
 protected:
  PreparedLab() {
    for (const char* host : {"host2", "host3", "host4"}) Do(std::string("lab host add -n ") + host);
    const json disks = Ask("lab disk list")["result"];
    for (const json& disk : disks) {
      const std::string device = disk["Device"];  // mpx.dkhba0:C0:T1:L0 and so on
      const std::string name =
          std::array{"CACHE", "FLASH", "DISK"}.at(device[9] - '0') + device.substr(15, 1);
      names[name] = device;
      names[name + "ID"] = disk["KOREL UUID"];
    }
    Found("host2", "", "B");
    Do("korel faultdomain set --fdname west");
    Do("korel datastore add --name far --uuid 5291022a-ad03-df90-dd0f-b9f980cc0002");
    Found("host4", " --client-mode", "C");
    Found("host1", "", "A");
    names["DEFAULT"] = Ask("korel datastore list")["result"][0]["Datastore UUID"];
    names["FAR"] = "5291022a-ad03-df90-dd0f-b9f980cc0002";
    names["NEAR"] = "5291022a-ad03-df90-dd0f-b9f980cc0003";
    names["NODE"] = "5291022a-ad03-df90-dd0f-b9f980cc005e";
    for (const char* line :
         {"datastore add --name near --uuid NEAR", "network ip add -i hsk1",
          "datastore add --name far --uuid FAR --cluster-uuid B", "storagepool add --disk FLASH2",
          "storage add --ssd CACHE1 --disks DISK1 --disks DISK2",
          "storage add --ssd CACHE2 --disks DISK3",
          "storage tag add --tag korelDirect --disk DISK5",
          "storage diskgroup unmount --ssd CACHE2 --evacuation-mode NoAction",
          "cluster unicastagent add --type node --uuid NODE -U true --addr 10.0.0.2 --port 7",
          "cluster unicastagent add --addr 10.0.0.3"}) {
      Do("korel " + Meant(line));
    }
  }

  void Found(const char* host, const std::string& options, const char* name) {
    environment["KOREL_LAB_HOST"] = host;
    Do("korel cluster new" + options);
    const json clusters = Ask("lab cluster list")["result"];
    for (const json& cluster : clusters) {
      if (cluster["Members"] == json{host}) names[name] = cluster["UUID"];
    }
  }

  /// The words, each name among them replaced by what it stands for.
  std::string Meant(const std::string& words) const {
    std::istringstream all(words);
    std::string meant;
    for (std::string word; all >> word;) {
      meant += (meant.empty() ? "" : " ") + (names.contains(word) ? names.at(word) : word);
    }
    return meant;
  }

  /// What the words can go on with, without descriptions, in names.
  std::string Offered(const std::string& words) const {
    const Ended ended = Run("--complete " + Meant(words) + " ''");
    EXPECT_EQ(ended.status, 0);
    std::istringstream lines(ended.out);
    std::string offered;
    for (std::string line; std::getline(lines, line);) {
      line = line.substr(0, line.find('\t'));
      const auto name =
          std::ranges::find(names, line, [](const auto& each) { return each.second; });
      offered += (offered.empty() ? "" : " ") + (name == names.end() ? line : name->first);
    }
    return offered;
  }

  std::map<std::string, std::string> names;
};

TEST_F(PreparedLab, OffersWhatACommandCanTake) {
  const std::array<const char*, 3> cases[] = {
      {"host1", "korel datastore remove --uuid", "FAR NEAR"},
      {"host1", "korel datastore name set --uuid", "DEFAULT NEAR"},
      {"host1", "korel datastore add --cluster-uuid", "B"},
      {"host1", "korel cluster leave --cluster-uuid", "A"},
      {"host3", "korel cluster join --cluster-uuid", "B A"},
      {"host3", "korel cluster join --client-mode --cluster-uuid", "C"},
      {"host3", "korel cluster join --witness-preferred-fault-domain", "host1 west"},
      {"host1", "korel cluster preferredfaultdomain set -n", "host1 west"},
      {"host1", "korel cluster unicastagent add --cluster-uuid", "A"},
      {"host1", "korel cluster unicastagent add -t remote --cluster-uuid", "B C"},
      {"host1", "korel cluster unicastagent add --bound-interface-name", "hsk1 hsk0 hsk2"},
      {"host1", "korel cluster unicastagent remove --addr", "10.0.0.2 10.0.0.3"},
      {"host1", "korel cluster unicastagent remove --uuid", "NODE"},
      {"host1", "korel cluster unicastagent remove --port", "7 12321"},
      {"host1", "korel network ip add -i", "hsk0 hsk2"},
      {"host1", "korel network remove -i", "hsk1"},
      {"host1", "korel storage add --ssd", "CACHE1"},
      {"host3", "korel storage add --ssd", "CACHE1 CACHE2"},
      {"host1", "korel storage add --disks DISK4 --disks", "FLASH1 DISK6"},
      {"host1", "korel storage add --disks DISK4 --ssd CACHE1 --disks", "FLASH1 DISK6"},
      {"host1", "korel storage remove --ssd", "CACHE2 CACHE1"},
      {"host1", "korel storage remove --disk", "DISK3 DISK2 DISK1"},
      {"host1", "korel storage remove --uuid", "DISK3ID DISK2ID CACHE2ID CACHE1ID DISK1ID"},
      {"host1", "korel storage diskgroup mount --ssd", "CACHE2"},
      {"host1", "korel storage diskgroup mount --disk", "DISK3"},
      {"host1", "korel storage diskgroup unmount --ssd", "CACHE1"},
      {"host1", "korel storage diskgroup unmount --disk", "DISK2 DISK1"},
      {"host1", "korel storage tag add -t capacityFlash --disk", ""},
      {"host3", "korel storage tag add -t capacityFlash --disk", "CACHE1 CACHE2"},
      {"host1", "korel storage tag add -t korelDirect --disk", "FLASH1 DISK4 DISK6"},
      {"host1", "korel storage tag remove --disk", "FLASH1 DISK5"},
      {"host1", "korel storage tag remove -t korelDirect --disk", "DISK5"},
      {"host1", "korel storagepool add --disk", "FLASH1"},
      {"host1", "korel storagepool remove --disk", "FLASH2"},
      {"host1", "lab host reboot --name", "host1 host2 host3 host4"},
      {"host1", "lab cluster show --uuid", "B C A"},
      {"host1", "lab file remove --path", "/etc/ostrel/korel/koreltraced.conf"},
      {"host1", "lab try korel datastore remove --uuid", "FAR NEAR"},
  };
  for (const auto& [host, words, offered] : cases) {
    environment["KOREL_LAB_HOST"] = host;
    EXPECT_EQ(Offered(words), offered) << host << ": " << words;
  }
}

/// One of the hosts does what an example says. A UUID in one stands for host2's cluster.
TEST_F(PreparedLab, HasSoundCompanionsAndDoesWhatExamplesSay) {
  Do("--plugins");
  WriteFile(folder / "hosts.json", R"({"hosts": [{"name": "one"}]})");
  names["5291022a-ad03-df90-dd0f-b9f980cc005e"] = names["B"];
  Do(Meant("korel datastore remove --uuid FAR"));  // an example mounts it
  int count = 0;
  for (const char* file : {"korel.json", "lab.json"}) {
    const json companion =
        json::parse(ReadFile(std::string(KOREL_BUILD_DIR "/lib/autocli/plugins/") + file));
    for (const auto& [path, command] : companion.items()) {
      for (const json& example : command.value("examples", json::array())) {
        const std::string line = example["line"];
        ++count;
        std::string errors;
        bool isDone = false;
        for (const char* host : {"host1", "host2", "host3"}) {
          environment["KOREL_LAB_HOST"] = host;
          const std::string tried = line.starts_with("lab try ") ? line : "lab try " + Meant(line);
          const Ended ended = Run(tried);
          isDone = isDone || ended.status == 0;
          errors += ended.err;
        }
        EXPECT_TRUE(isDone) << line << "\n" << errors;
        EXPECT_FALSE(std::string(example["text"]).empty()) << line;
      }
    }
  }
  EXPECT_GT(count, 0);
}

}  // namespace test
