#include <gmock/gmock.h>

#include <algorithm>
#include <regex>

#include "tests/e2e/Program.h"

namespace test {

using nlohmann::json;

TEST_F(Lab, LeadsWhereItsRefusalsPoint) {
  const std::regex quoted("'(?:autocli )?((?:korel|lab) [^']*)'");
  const std::string other = "aaaaaaaa-0000-4000-8000-000000000001";
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"korel cluster new", "lab host reboot"}, "korel datastore add -n ds"},
      {{"korel cluster new", "lab host reboot"}, "korel network security get"},
      {{"korel cluster new", "lab host reboot"}, "korel cluster join -u " + other},
      {{"korel cluster join -u " + other, "lab host reboot"},
       "korel cluster unicastagent add -t witness -a 10.0.0.9 -c " + other},
      {{"korel cluster new -c"}, "korel datastore add -n ds"},
      {{"korel cluster new", "lab host reboot"}, "lab host set --node-type metadata"},
      {{}, "lab host set --node-type metadata"},
      {{}, "korel datastore clear"},
      {{"korel network ip add -i hsk0", "lab host reboot"}, "korel network remove -i hsk0"},
      {{}, "korel maintenancemode cancel"},
      {{"lab maintenance start"}, "lab maintenance start"},
  };
  for (const auto& [preparations, line] : cases) {
    Do("lab init --force");
    for (const std::string& preparation : preparations) Do(preparation);
    Ended ended = Run(line);
    EXPECT_EQ(ended.status, 1) << line;
    for (int steps = 0; ended.status == 1 && steps < 3; ++steps) {
      std::sregex_iterator command(ended.err.begin(), ended.err.end(), quoted);
      EXPECT_NE(command, std::sregex_iterator()) << ended.err;
      // Those that need more words are refused, and others beside them do as well.
      for (; command != std::sregex_iterator(); ++command) EXPECT_NE(Run((*command)[1]).status, 1);
      ended = Run(line);
    }
    EXPECT_EQ(ended.status, 0) << line << ": " << ended.err;
  }
}

TEST_F(Lab, KeepsAFileOfAHostByteForByte) {
  const std::string bytes("\0\xff\r\nlast", 8);
  const std::string from = folder / "from";
  const std::string to = folder / "to";
  WriteFile(from, bytes);
  Do("lab file put --path /etc/odd --from " + from);
  Do("lab file get --path /etc/odd --to " + to);
  EXPECT_EQ(ReadFile(to), bytes);
  Fails("lab file get --path /etc/odd --to " + to,
        "'" + to + "' is there already; --force replaces it");
  Do("lab file get --path /etc/odd --force --to " + to);
}

TEST_F(Lab, ShowsHostsClustersAndInterfacesAsWhatTheyAre) {
  Do("korel cluster new --client-mode");
  EXPECT_EQ(Ask("lab host list")["result"][0]["Node Type"], "client");
  const json cluster = Ask("lab cluster list")["result"][0];
  EXPECT_EQ(Ask("lab show")["result"]["Clusters"],
            json::array({{{"UUID", cluster["UUID"]}, {"Client", true}, {"Members", {"host1"}}}}));

  Do("korel network ip add -i hsk1 -T witness");
  Do("korel network clear");
  Do("korel network ip add -i hsk0 -T korel -T witness");
  EXPECT_EQ(Ask("lab interface list")["result"], json::parse(R"([
    {"Name":"hsk0","In Use":true,"Persisted":true,"Traffic Types":["korel","witness"]},
    {"Name":"hsk1","In Use":false,"Persisted":true,"Traffic Types":[]},
    {"Name":"hsk2","In Use":false,"Persisted":false,"Traffic Types":[]}])"));
}

TEST_F(Lab, SaysTheWayOutForDisksThatAreNotHealthy) {
  const std::string cache = "mpx.dkhba0:C0:T1:L0";
  const std::string first = "mpx.dkhba2:C0:T1:L0";
  const std::string second = "mpx.dkhba2:C0:T2:L0";
  Do("korel storage add --ssd " + cache + " --disks " + first + " --disks " + second);
  Do("korel storage add --ssd mpx.dkhba0:C0:T2:L0 --disks mpx.dkhba2:C0:T3:L0");
  for (const std::string& disk : {first, second}) Do("lab disk set --data 100 --device " + disk);
  Do("lab save --file " + (folder / "ready"));
  const std::regex next("'(korel storage (?!list').*?)'");
  /// Does what refusals say comes next, until the line is done; answers what is said last.
  const auto follow = [&](const std::string& wanted) {
    std::string line = wanted;
    for (int steps = 0; steps < 9; ++steps) {
      const Ended ended = Run(line);
      std::smatch command;
      const bool isLed = std::regex_search(ended.err, command, next);
      if (line == wanted && (ended.status == 0 || !isLed)) return ended.err;
      line = ended.status == 0 ? wanted : command.str(1);
    }
    return "in circles: " + wanted;
  };
  const std::string sick = "lab disk set --healthy false --device ";
  const std::string down = "korel storage diskgroup unmount --ssd " + cache;
  const std::string all = " --evacuation-mode evacuateAllData --";
  const std::vector<std::string> troubles[] = {{sick + first},
                                               {sick + first, down},
                                               {sick + cache},
                                               {sick + cache, down},
                                               {sick + first, down, sick + second},
                                               {"korel storage diskgroup unmount --disk " + first}};
  const std::string wishes[] = {
      "diskgroup mount --ssd " + cache,
      "diskgroup mount --disk " + first,
      "remove" + all + "disk " + first,
      "remove" + all + "ssd " + cache,
      "diskgroup unmount --evacuation-mode EvacuateAllData --ssd " + cache,
      "diskgroup rebuild" + all + "ssd " + cache,
      "diskgroup rebuild --force" + all + "ssd " + cache,
      "add --disks mpx.dkhba2:C0:T4:L0 --ssd " + cache};
  // What is so already, was taken out of use on the way, takes another option of the line, or
  // another device.
  const auto isEnd = testing::AnyOf(
      "", testing::HasSubstr("mounted already"), testing::HasSubstr("in no disk group"),
      testing::HasSubstr("is not the caching device of a disk group"),
      testing::HasSubstr("--force leaves them out"), testing::HasSubstr("'autocli lab disk add'"));
  for (const auto& trouble : troubles) {
    for (const std::string& wish : wishes) {
      Do("lab load --file " + (folder / "ready"));
      for (const std::string& line : trouble) Do(line);
      EXPECT_THAT(follow("korel storage " + wish), isEnd)
          << trouble.front() << ", " << trouble.back();
      EXPECT_EQ(Run("lab check").err, "");
    }
  }
}

TEST_F(Lab, IsNotChangedByCompletion) {
  const std::string calls = environment["KOREL_LAB_CALLS"] = folder / "calls";
  const auto completed = [&](const std::string& words) {
    const Ended ended = Run("--complete korel " + words);
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.err, "");
    return ended.out;
  };
  // The options of a rebuild depend on the host, which is asked for them.
  EXPECT_EQ(completed("storage diskgroup rebuild --t"), "") << "there is no host yet";
  EXPECT_EQ(completed("storage add --ssd ''"), "");
  EXPECT_FALSE(std::filesystem::exists(folder / "lab.db")) << "nobody used the lab yet";
  EXPECT_FALSE(std::filesystem::exists(calls));

  Do("korel cluster new");
  EXPECT_EQ(completed("storage diskgroup rebuild --t").substr(0, 6), "--trim");
  Do("korel datastore add --name ds1");
  EXPECT_NE(completed("datastore remove --uuid ''").find("\tds1\n"), std::string::npos);
  Do("lab fault add --operation GetDatastores --message gone --count 1");
  const std::string before = ReadFile(calls);
  EXPECT_EQ(completed("datastore remove --uuid ''"), "") << "a host that fails knows nothing";
  EXPECT_EQ(ReadFile(calls), before);
  Fails("korel datastore list", "Unable to add datastore: gone");
  Do("korel datastore list");
}

TEST_F(Lab, TriesAndTellsEveryChangeInNamesThatPeopleKnow) {
  environment["TMPDIR"] = folder / "temporary";
  std::filesystem::create_directory(environment["TMPDIR"]);
  Do("lab host add --name host2");
  Do("lab try lab fault list --no-header");  // which answers with nothing at all
  Do("korel cluster new");
  const std::string node2 = Ask("lab host list")["result"][1]["Node UUID"];
  // A metadata agent needs another feature, and is added as a witness without that one.
  Do("lab feature set --name rebuild-trim --enabled false");
  const std::pair<std::string, json> cases[] = {
      {"korel cluster unicastagent add -t metadata -a 10.0.0.3 -u " + node2,
       {"added", "unicast agent metadata 10.0.0.3 of host1", "UUID", nullptr, "host2"}},
      {"korel cluster unicastagent add -t node -U true -a 10.0.0.2 -u " + node2,
       {"added", "unicast agent node 10.0.0.2 of host1", "supports unicast", nullptr, "true"}},
      {"korel trace set -s 100",
       {"changed", "file /etc/ostrel/korel/koreltraced.conf of host1",
        "KORELTRACED_ROTATE_FILE_SIZE", "45", "100"}},
      {"lab daemon stop", {"changed", "host host1", "daemon running", "true", "false"}},
      {"lab init --force", {"removed", "host host2", "node UUID", node2, nullptr}},
  };
  for (const auto& [line, change] : cases) {
    const json result = json::parse(Run("lab try --formatter json " + line).out)["result"];
    const auto isTold = [&change = change](const json& one) {
      return json{one["Change"], one["Of"], one["Field"], one["Before"], one["After"]} == change;
    };
    EXPECT_TRUE(std::ranges::any_of(result["Changes"], isTold)) << line << result.dump(1);
  }
  EXPECT_TRUE(std::filesystem::is_empty(environment["TMPDIR"]));
}

TEST_F(Lab, ShowsErrorsOfWhatIsTriedAndRefusesWhatCannotBeTried) {
  Do("lab fault add --operation CreateCluster --message broken --count 1");
  const std::pair<std::string, std::string> cases[] = {
      {"korel cluster new", "Unable to create the new Korel cluster: broken"},
      {"lab cluster show -u 5291022a-ad03-df90-dd0f-b9f980cc0002",
       "there is no cluster 5291022a-ad03-df90-dd0f-b9f980cc0002"},
      {"korel clutser new", "unknown command \"clutser\" in \"korel\", did you mean \"cluster\"?"},
      {"korel datastore", "'korel datastore' ended with status 2"},
      {"lab --formatter simple try korel cluster new",
       "'lab try' cannot be tried: the lab is a copy already"},
  };
  for (const auto& [line, message] : cases) Fails("lab try " + line, message);
  const json failed = json::parse(Run("lab try --formatter json korel cluster new").out);
  EXPECT_EQ(failed["result"]["Operations"].back()["Error"], "broken");
  EXPECT_EQ(Ask("lab fault list")["result"].size(), 1U) << "not used up";
}

}  // namespace test
