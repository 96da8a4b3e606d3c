#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/e2e/Program.h"

namespace test {
namespace {

using Texts = std::vector<std::string>;

Texts Lines(const std::string& path) {
  std::ifstream file(path);
  Texts lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

TEST_F(Lab, BringsAboutEveryMessageOfTheTraceCommands) {
  const std::string config = "--path /etc/ostrel/korel/koreltraced.conf";
  const std::string checking = "Checking koreltraced status failed.";
  const std::string set = "korel trace set -s 7";
  const struct {
    std::string preparation;
    std::string line;
    std::string message;
  } cases[] = {
      {"lab daemon set --status -1", "korel trace get",
       checking + "Refer to /var/log/syslog.log for details."},
      {"lab daemon set --status 3", "korel trace get", "Korel is not enabled on this host."},
      {"lab file remove " + config, "korel trace get",
       "Error opening Korel trace config file for reading."},
      {"lab file remove " + config, set, "Error opening Korel Trace Config File for reading."},
      {"lab file put --read-only --from /etc/passwd " + config, set,
       "Error opening Korel Trace Config File for writing."},
      {"lab daemon set --status -1", set,
       "Failed to check koreltraced status. Refer /var/log/syslog.log for details."},
      {"lab daemon set --restart-status 7", set,
       "Failed to restart koreltraced: 7;  Refer /var/log/syslog.log for details."},
  };
  for (const auto& [preparation, line, message] : cases) {
    Do("lab init --force");
    Do(preparation);
    Fails(line, message);
  }
  Do("lab init --force");
  Do("lab daemon set --status 3");
  Do(set);
  const Ended lines = Run("lab file get " + config);
  EXPECT_NE(lines.out.find("KORELTRACED_ROTATE_FILE_SIZE=7\n"), std::string::npos);
}

TEST_F(Lab, KeepsAFileOfAHostByteForByte) {
  std::string bytes("\0\xff\r\nlast", 8);
  std::ofstream(folder + "/from", std::ios::binary) << bytes;
  Do("lab file put --path /etc/odd --from " + folder + "/from");
  Do("lab file get --path /etc/odd --to " + folder + "/to");
  std::ostringstream got;
  got << std::ifstream(folder + "/to", std::ios::binary).rdbuf();
  EXPECT_EQ(got.str(), bytes);
  const std::string there = "'" + folder + "/to' is there already; --force replaces it";
  Fails("lab file get --path /etc/odd --to " + folder + "/to", there);
  Do("lab file get --path /etc/odd --force --to " + folder + "/to");
  std::ofstream(folder + "/from") << std::string((64 << 10) + 1, 'x');
  Fails("lab file put --path /etc/odd --from " + folder + "/from",
        "a host's file holds at most 64 KiB, '/etc/odd' would hold 65537 bytes");
  Fails("lab file get --path /etc/none",
        "host1 has no file '/etc/none'; 'autocli lab file list' shows those it has");
}

TEST_F(Lab, ShowsAHostAsWhatItIsAndEntriesWithTheNamesOfThen) {
  Do("korel cluster new --client-mode");
  EXPECT_EQ(Ask("lab host list")["result"][0]["Node Type"], "client");
  EXPECT_EQ(Ask("lab disk list")["result"][0]["Data"], "0 GB");
  for (const char* name : {"one", "two"}) {
    std::ofstream(folder + "/hosts") << R"({"hosts":[{"name":")" << name << R"("}]})";
    Do("lab init --force --inventory " + folder + "/hosts");
  }
  EXPECT_NE(Ask("lab history --entry 2").dump().find("\"membership host1 of "), std::string::npos);
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

}  // namespace
}  // namespace test
