#include <set>

#include "tests/e2e/Program.h"
#include "tests/support/Database.h"

namespace test {

using nlohmann::json;

/// What to type for the commands that take words after their path, by that path: in a lab with a
/// cluster, a disk group, agents and a network, each of these does its work.
std::map<std::string, std::string> PreparedLines() {
  std::map<std::string, std::string> lines;
  std::ifstream file(PREPARED_LINES);
  for (std::string line; std::getline(file, line);) lines[line.substr(0, line.find(" -"))] = line;
  return lines;
}

/// Operations after which a command may still call one that fails.
const std::set<std::string> kChanging = {"AddUnicastAgent", "SetDataInTransitEncryption",
                                         "SetTracedLogOptions", "RemoveUnicastAgent"};

/// `line` with the UUID in the place of the word CLUSTER.
std::string Meant(std::string line, const std::string& cluster) {
  const auto at = line.find("CLUSTER");
  return at == std::string::npos ? line : line.replace(at, 7, cluster);
}

/// Adds the paths of all commands from the node on.
void AddLeaves(const json& node, const std::string& path, std::vector<std::string>& leaves) {
  if (node["kind"] == "command") leaves.push_back(path);
  for (const json& child : node.value("children", json::array())) {
    AddLeaves(child, path + (path.empty() ? "" : " ") + std::string(child["name"]), leaves);
  }
}

class EveryCommand : public Lab {
 protected:
  EveryCommand() {
    environment["KOREL_LAB"] = LabFile();
    environment["KOREL_LAB_CALLS"] = folder / "calls";
  }

  std::string LabFile() const { return folder / "lab/lab.db"; }

  void Copy(const char* from, const char* to) const {
    std::filesystem::remove_all(folder / to);
    std::filesystem::copy(folder / from, folder / to, std::filesystem::copy_options::recursive);
  }
  void GoBack() const { Copy("saved", "lab"); }

  /// What has to be as it was after a failure.
  std::string State() const {
    EXPECT_TRUE(std::filesystem::exists(LabFile()));
    const std::filesystem::directory_iterator files(folder / "lab");
    EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "a lab is one file";
    return RowsOf(LabFile(), "'faults', 'faultCalls', 'history'");
  }

  /// The operations called since the last question, in order.
  std::vector<std::string> Called() const {
    std::vector<std::string> operations;
    std::ifstream calls(folder / "calls");
    for (std::string line; std::getline(calls, line);) {
      operations.push_back(json::parse(line)["operation"]);
    }
    std::filesystem::remove(folder / "calls");
    return operations;
  }

  /// Each operation that the line calls fails once: one error with its words, and nothing changed.
  void CheckFailures(const std::string& line, const std::vector<std::string>& operations) const {
    for (const std::string& operation : std::set(operations.begin(), operations.end())) {
      SCOPED_TRACE("failing " + operation);
      GoBack();
      const std::string before = State();
      RunSql(LabFile(), "INSERT INTO faults (operation, message) VALUES ('" + operation +
                            "', 'injected failure')");
      const Ended ended = Run(line);
      const auto called = Called();
      EXPECT_EQ(ended.status, 1) << ended.err;
      EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1) << ended.err;
      std::string words = "injected failure";
      if (operation == "GetKorelInfo") words = "Could not get KorelInfo. Plugin version mismatch?";
      if (line == "korel faultdomain reset") words = "Unable to reset fault domain name";
      EXPECT_NE(ended.err.find(words), std::string::npos) << ended.err;
      const bool hasChanged = std::ranges::any_of(
          called, [&](const auto& one) { return one != operation && kChanging.contains(one); });
      if (!hasChanged) {
        EXPECT_EQ(State(), before);
      }
    }
  }
  /// The line when it is tried: nothing of it stays, and what it says is what happens then.
  void CheckTried(const std::string& line) const {
    GoBack();
    Called();
    const std::string before = State();
    const json tried = json::parse(Run("lab try --formatter json " + line).out);
    EXPECT_EQ(State(), before);
    EXPECT_EQ(Called(), std::vector<std::string>());
    const int status = Run(line).status;
    EXPECT_EQ(tried["ok"], status == 0) << tried;
    std::vector<std::string> operations;
    for (const json& call : tried["result"]["Operations"]) operations.push_back(call["Operation"]);
    EXPECT_EQ(operations, Called());
    EXPECT_EQ(tried["result"]["Changes"].empty(), State() == before) << tried;
  }
  /// Runs every command, with that cluster, and once more for each failure.
  void CheckAll(const std::string& cluster) const {
    std::vector<std::string> leaves;
    AddLeaves(json::parse(Run("--describe korel").out), "", leaves);
    const auto lines = PreparedLines();
    ASSERT_FALSE(leaves.empty());
    for (const std::string& path : leaves) {
      SCOPED_TRACE(path);
      const std::string line =
          "korel " + (lines.contains(path) ? Meant(lines.at(path), cluster) : path);
      GoBack();
      Called();
      const Ended ended = Run(line);
      // A result of another shape than declared would be status 4.
      EXPECT_LE(ended.status, 1) << ended.err << "what it takes is said in " PREPARED_LINES;
      EXPECT_EQ(ended.status == 0, ended.err.empty()) << ended.err;
      CheckFailures(line, Called());
      CheckTried(line);
    }
  }
};

/// Holds each statement that changes rows against its entry in the memory.
TEST_F(EveryCommand, IsTakenBackAndDoneAgain) {
  std::ifstream batch(EVERY_COMMAND);
  Do("lab host add --name host2");
  Do("lab host add --name host3");
  environment["KOREL_LAB_HOST"] = "host2";
  Do("korel cluster new");
  const std::string cluster = Ask("korel datastore list")["result"][0]["Cluster UUID"];
  environment["KOREL_LAB_HOST"] = "host3";
  Do("korel cluster join -u " + cluster);
  environment.erase("KOREL_LAB_HOST");
  int changes = 0;
  for (std::string line; std::getline(batch, line);) {
    if (line.starts_with('#')) continue;
    SCOPED_TRACE(line);
    const std::string before = State();
    EXPECT_EQ(Run(Meant(line, cluster)).status, 0);
    const std::string after = State();
    if (after == before || line.starts_with("lab undo")) continue;
    ++changes;
    Do("lab undo");
    EXPECT_EQ(State(), before);
    Do("lab undo");
    EXPECT_EQ(State(), after);
  }
  EXPECT_GT(changes, 40);
  Do("lab check");
}

TEST_F(EveryCommand, FailsCleanlyInAFreshLab) {
  Do("lab host list");
  Copy("lab", "saved");
  CheckAll("5291022a-ad03-df90-dd0f-b9f980cc0003");
}

TEST_F(EveryCommand, FailsCleanlyInAPreparedLab) {
  Do("korel cluster new");
  const std::string cluster = Ask("korel datastore list")["result"][0]["Cluster UUID"];
  for (const char* line :
       {"storage add -s mpx.dkhba0:C0:T1:L0 -d mpx.dkhba2:C0:T1:L0 -d mpx.dkhba2:C0:T2:L0",
        "datastore add -n ds1 -u 5291022a-ad03-df90-dd0f-b9f980cc0002",
        "network ip add -i hsk0 -T korel -T witness", "storagepool add -d mpx.dkhba1:C0:T2:L0",
        "cluster unicastagent add -t node -u 5291022a-ad03-df90-dd0f-b9f980cc005e -U true "
        "-a 10.0.0.1 -T 00:01:02:03:04:05:06:07:08:09:0a:0b:0c:0d:0e:0f:10:11:12:13"}) {
    Do(std::string("korel ") + line);
  }
  Do("lab maintenance start");
  Copy("lab", "saved");
  CheckAll(cluster);
}

}  // namespace test
