#include <algorithm>
#include <filesystem>

#include "tests/e2e/Program.h"

namespace test {
namespace {

using nlohmann::json;

TEST_F(Lab, TriesAndTellsEveryChangeInNamesThatPeopleKnow) {
  environment["TMPDIR"] = folder + "/temporary";
  std::filesystem::create_directory(environment["TMPDIR"]);
  Do("lab host add --name host2");
  Do("lab try lab fault list --no-header");  // which answers with nothing at all
  Do("korel cluster new");
  const std::string node2 = Ask("lab host list")["result"][1]["Node UUID"];
  // A metadata agent needs another feature, and is added as a witness without that one.
  Do("lab feature set --name rebuild-trim --enabled false");
  Do("korel datastore add -n ds1 -u 5291022a-ad03-df90-dd0f-b9f980cc0002");
  Do("korel storage add -s mpx.dkhba0:C0:T1:L0 -d mpx.dkhba2:C0:T1:L0 -d mpx.dkhba2:C0:T2:L0");
  const std::pair<std::string, json> cases[] = {
      {"korel datastore name set -u 5291022a-ad03-df90-dd0f-b9f980cc0002 -n new",
       {"changed", "datastore ds1", "name", "ds1", "new"}},
      {"korel storage remove -d mpx.dkhba2:C0:T1:L0",
       {"removed", "claimed device mpx.dkhba2:C0:T1:L0 of host1", "disk group",
        "mpx.dkhba0:C0:T1:L0", nullptr}},
      {"korel cluster unicastagent add -t node -U true -a 10.0.0.2 -u " + node2,
       {"added", "unicast agent node 10.0.0.2 of host1", "supports unicast", nullptr, "true"}},
      {"korel cluster unicastagent add -t metadata -a 10.0.0.3 -u " + node2,
       {"added", "unicast agent metadata 10.0.0.3 of host1", "UUID", nullptr, "host2"}},
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

}  // namespace
}  // namespace test
