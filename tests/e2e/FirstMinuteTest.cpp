#include <filesystem>
#include <fstream>
#include <set>
#include <thread>

#include "tests/e2e/Program.h"

namespace test {
namespace {

using Texts = std::vector<std::string>;

/// The devices that `lab disk list` offers for "cache" or "capacity".
Texts DevicesFor(const nlohmann::json& disks, const std::string& use) {
  Texts names;
  for (const auto& disk : disks["result"]) {
    if (disk["Fit For"] == use) names.push_back(disk["Device"]);
  }
  return names;
}

Texts Lines(const std::string& path) {
  std::ifstream file(path);
  Texts lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

TEST_F(Lab, CarriesANewcomerThroughTheFirstMinute) {
  Do("korel cluster new");
  const auto disks = Ask("lab disk list");
  const Texts caches = DevicesFor(disks, "cache");
  const Texts capacities = DevicesFor(disks, "capacity");
  ASSERT_GE(caches.size(), 2U);
  ASSERT_GE(capacities.size(), 2U);
  Do("korel storage add -s " + caches[0] + " -d " + capacities[0] + " -d " + capacities[1]);
  std::set<std::string> shown;
  const auto claimed = Ask("korel storage list")["result"];
  for (const auto& disk : claimed) {
    shown.insert(disk["Device"]);
    EXPECT_EQ(disk["KOREL Disk Group Name"], caches[0]);
    EXPECT_EQ(disk["In HXDS"], true);
  }
  EXPECT_EQ(shown, (std::set<std::string>{caches[0], capacities[0], capacities[1]}));

  Do("korel datastore add --name ds1");
  const auto list = Ask("korel datastore list")["result"];
  ASSERT_EQ(list.size(), 2U);
  EXPECT_EQ(list[0]["User Friendly Name"], "default");
  EXPECT_EQ(list[0]["Default"], true);
  EXPECT_EQ(list[1]["User Friendly Name"], "ds1");
  EXPECT_EQ(list[1]["Remote"], false);
  EXPECT_EQ(list[1]["Cluster UUID"], list[0]["Cluster UUID"]);

  Do("korel datastore name set -n ds2 -u " + list[1]["Datastore UUID"].get<std::string>());
  EXPECT_EQ(Run("korel datastore list --formatter csv --fields").status, 2);
  EXPECT_EQ(RunWords({"korel", "datastore", "list", "--formatter", "csv", "--fields",
                      "User Friendly Name,Default"})
                .out,
            "User Friendly Name,Default\ndefault,true\nds2,false\n");
  Do("korel storage remove -s " + caches[0]);
  EXPECT_EQ(Ask("korel storage list")["result"].size(), 0U);
}

TEST_F(Lab, RefusesInPlainWordsAndChangesNothing) {
  Do("korel cluster new");
  const auto before = Ask("korel datastore list");
  const Texts hostile = {"",           "two words",   "$(touch pwned);`id`",
                         "line\nfeed", "\x1b[31mred", "bad\xff\xfeutf8",
                         "-leading",   "../up",       std::string(100000, 'n')};
  for (const std::string& name : hostile) {
    SCOPED_TRACE(name.substr(0, 30));
    const Ended ended = RunWords({"korel", "datastore", "add", "--name=" + name});
    EXPECT_EQ(ended.status, 1);
    EXPECT_EQ(ended.out, "");
    EXPECT_TRUE(ended.err.starts_with("error: Unable to add datastore: ")) << ended.err;
    EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1);
    EXPECT_EQ(ended.err.find('\x1b'), std::string::npos);
    // The message stays readable however long the name is.
    EXPECT_LT(ended.err.size(), 1000U);
  }
  const std::vector<std::pair<std::string, int>> lines = {
      {"korel datastore remove -u nonsense", 1},
      {"korel datastore remove -u 5291022a-ad03-df90-dd0f-b9f980cc005e", 1},
      {"korel storage add -s nothing -d nothing", 1},
      {"korel cluster new", 1},
      {"korel cluster join -u 5291022a-ad03-df90-dd0f-b9f980cc005", 1},
      {"korel datastore add", 2},
      {"korel datastore add -n a -n b", 2},
      {"korel datastore addd", 2},
      {"korel", 2},
  };
  for (const auto& [line, status] : lines) {
    const Ended ended = Run(line);
    EXPECT_EQ(ended.status, status) << line;
    EXPECT_NE(ended.err, "") << line;
    EXPECT_EQ(ended.out, "") << line;
  }
  EXPECT_EQ(Ask("korel datastore list"), before);
}

TEST_F(Lab, KeepsACallLogAndInjectsFailures) {
  environment["KOREL_LAB_CALLS"] = folder + "/calls";
  Do("korel cluster new");
  Do("lab fault add --operation AddDatastore --message broken --count 1");
  Do("lab fault add --operation GetKorelInfo --message gone --count 1");
  EXPECT_EQ(Run("korel datastore add -n ds1").err,
            "error: Unable to add datastore: Could not get KorelInfo. Plugin version mismatch?\n");
  const auto failed = Ask("korel datastore add -n ds1");
  EXPECT_EQ(failed["ok"], false);
  EXPECT_EQ(failed["result"], nullptr);
  EXPECT_EQ(failed["errors"][0]["message"], "Unable to add datastore: broken");
  Do("korel datastore add -n ds1");

  Texts operations;
  for (const std::string& line : Lines(folder + "/calls")) {
    const auto call = nlohmann::json::parse(line);
    operations.push_back(call["operation"].get<std::string>() +
                         (call.contains("error") ? " failed" : ""));
  }
  EXPECT_EQ(operations, (Texts{"GetKorelInfo", "GetClusterInfo", "IsClientModeEnabled",
                               "CreateCluster", "GetKorelInfo failed", "GetKorelInfo",
                               "AddDatastore failed", "GetKorelInfo", "AddDatastore"}));
}

TEST_F(Lab, LosesNothingWhenManyWriteAtOnce) {
  Do("korel cluster new");
  std::vector<std::thread> writers;
  std::vector<int> statuses(8, -1);
  for (std::size_t i = 0; i < statuses.size(); ++i) {
    // Each writer is a Lab user of its own: the runs share nothing but the lab.
    writers.emplace_back([&, i] {
      for (int n = 0; n < 5; ++n) {
        const std::string name = "ds" + std::to_string(i) + "-" + std::to_string(n);
        const std::string line = "KOREL_LAB=" + environment["KOREL_LAB"] +
                                 " " KOREL_BUILD_DIR "/bin/autocli korel datastore add -n " + name +
                                 " >/dev/null";
        statuses[i] = std::system(line.c_str());
        if (statuses[i] != 0) return;
      }
    });
  }
  for (std::thread& writer : writers) writer.join();
  EXPECT_EQ(statuses, std::vector<int>(8, 0));
  EXPECT_EQ(Ask("korel datastore list")["result"].size(), 41U);
}

TEST_F(Lab, IsMadeOnceWhenManyComeFirst) {
  std::vector<std::thread> firsts;
  std::vector<int> statuses(6, -1);
  for (int& status : statuses) {
    firsts.emplace_back([&] {
      const std::string line = "KOREL_LAB=" + environment["KOREL_LAB"] +
                               " " KOREL_BUILD_DIR "/bin/autocli korel storage list >/dev/null";
      status = std::system(line.c_str());
    });
  }
  for (std::thread& first : firsts) first.join();
  EXPECT_EQ(statuses, std::vector<int>(6, 0));
  EXPECT_EQ(Ask("lab host list")["result"].size(), 1U);
}

TEST_F(Lab, IsNotChangedByCompletion) {
  environment["AUTOCLI_COMPLETE_MS"] = "60000";
  environment["KOREL_LAB_CALLS"] = folder + "/calls";
  const auto completed = [&](const Texts& words) {
    const Ended ended = RunWords(words);
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.err, "");
    return ended.out;
  };
  // The options of a rebuild depend on the host, which is asked for them.
  EXPECT_NE(completed({"--complete", "korel", "storage", "diskgroup", "rebuild", "--t"}), "");
  EXPECT_EQ(completed({"--complete", "korel", "storage", "add", "--ssd", ""}), "");
  EXPECT_FALSE(std::filesystem::exists(folder + "/lab.db")) << "nobody used the lab yet";
  EXPECT_FALSE(std::filesystem::exists(folder + "/calls"));

  Do("korel cluster new");
  Do("korel datastore add --name ds1");
  const Texts datastores = {"--complete", "korel", "datastore", "remove", "--uuid", ""};
  EXPECT_NE(completed(datastores).find("\tds1\n"), std::string::npos);
  Do("lab fault add --operation GetDatastores --message gone --count 1");
  const auto calls = Lines(folder + "/calls");
  EXPECT_EQ(completed(datastores), "") << "a host that fails knows nothing";
  EXPECT_EQ(Lines(folder + "/calls"), calls);
  Fails("korel datastore list", "Unable to add datastore: gone");
  Do("korel datastore list");
}

TEST_F(Lab, IsPickedByTheEnvironment) {
  Do("lab host add --name host2");
  environment["KOREL_LAB_HOST"] = "host2";
  Do("korel cluster new");
  environment["KOREL_LAB_HOST"] = "host1";
  EXPECT_EQ(Ask("korel datastore list")["result"].size(), 0U);
  environment["KOREL_LAB_HOST"] = "host\x1b[3";
  const Ended ended = Run("korel datastore list");
  EXPECT_EQ(ended.status, 1);
  EXPECT_NE(ended.err.find("host2"), std::string::npos) << ended.err;
  environment.erase("KOREL_LAB_HOST");
  environment["KOREL_LAB"] = "relative/lab.db";
  EXPECT_EQ(Run("korel datastore list").status, 1);
  EXPECT_FALSE(std::filesystem::exists("relative"));
}

TEST_F(Lab, IsReachedThroughTheLinkKorel) {
  const std::string line = "KOREL_LAB=" + environment["KOREL_LAB"] +
                           " " KOREL_BUILD_DIR "/bin/korel cluster new >" + folder + "/out";
  EXPECT_EQ(std::system(line.c_str()), 0);
  EXPECT_EQ(Lines(folder + "/out"), Texts{"true"});
}

TEST(PlugIn, ExportsItsEntryPointAlone) {
  const std::string listing = testing::TempDir() + "symbols";
  const std::string line = "nm -D --defined-only " KOREL_BUILD_DIR
                           "/lib/autocli/plugins/korel.so | awk '{print $NF}' >" +
                           listing;
  ASSERT_EQ(std::system(line.c_str()), 0);
  EXPECT_EQ(Lines(listing), Texts{"AutoCli_RegisterNamespaces"});
}

}  // namespace
}  // namespace test
