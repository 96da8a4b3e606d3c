#include <sstream>

#include "lab/common/Text.h"
#include "lab/hostctl/Program.h"
#include "lab/model/HostRoot.h"
#include "lab/model/Lab.h"
#include "lab/model/Trace.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::Pair;
using Tovrin::Misc::HostPath;

class TraceTest : public LabTest {
 protected:
  static int Daemon(const std::string& argument) {
    return KorelUtil::KorelExec(lab::kTraceDaemon, argument, false, true, false);
  }
  static std::string ConfigFile() { return HostPath("/etc/ostrel/korel/koreltraced.conf"); }
  /// What each line of the daemon's log ends with.
  static std::string LoggedEvents() {
    std::istringstream log(ReadFile(HostPath("/var/log/koreltraced.log")));
    std::string events;
    for (std::string time, name, event; log >> time >> name >> event;) events += event + " ";
    return events;
  }
  static lab::TraceOptions Options() {
    return lab::InLab(
        [](lab::Store& store) { return lab::TraceOptionsOf(store, lab::CurrentHost(store)); });
  }
};

TEST_F(TraceTest, OptionsAreKeptByHostAndRefusedWhole) {
  AddHostsUpTo(2);
  KorelUtil::SetTracedLogOptions({{"normal_path", "/a b"}, {"urgent_to_syslog", "true"}});
  KorelUtil::SetTracedLogOptions({{"normal_path", ""}, {"object_manager_size_in_kb", "0"}});
  EXPECT_THAT(Options(), testing::UnorderedElementsAre(Pair("normal_path", ""),
                                                       Pair("object_manager_size_in_kb", "0"),
                                                       Pair("urgent_to_syslog", "true")));
  const std::string path =
      "trace option normal_path must be an absolute path without quotation marks and control "
      "characters, or be empty, got ";
  const std::string files = "trace option normal_num_of_files must be a number of 0 or more, got ";
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {"normal_paths", "/", "no trace option is named 'normal_paths', did you mean 'normal_path'?"},
      {"normal_path", "/a\"b", path + "'/a\"b'"},
      {"normal_path", "/a\nKEY=1", path + "'/a\nKEY=1'"},
      {"normal_num_of_files", "7x", files + "'7x'"},
      {"normal_num_of_files", "9223372036854775808", files + "'9223372036854775808'"},
      {"urgent_to_syslog", "1", "trace option urgent_to_syslog must be true or false, got '1'"},
  };
  for (const auto& [name, value, message] : cases) {
    const std::unordered_map<std::string, std::string> options{
        {"log_structured_object_manager_size_in_kb", "5"}, {name, value}};
    ExpectRefused([&] { KorelUtil::SetTracedLogOptions(options); }, message);
  }
  StandOn("host2");
  EXPECT_TRUE(Options().empty());
}

TEST_F(TraceTest, DaemonOfAHostRunsUntilItIsStoppedAndNeedsItsConfiguration) {
  // No shell may take the lab's path for more than a path.
  std::filesystem::create_directory(Path("-a $(b) 'c'"));
  setenv("KOREL_LAB", Path("-a $(b) 'c'/lab.db").c_str(), 1);
  AddHostsUpTo(2);
  EXPECT_EQ(Daemon("status"), 0);
  EXPECT_EQ(Daemon("start"), 0);
  lab::RunTraceDaemon("stop");
  EXPECT_EQ(Daemon("status"), 3);
  StandOn("host2");
  EXPECT_EQ(Daemon("status"), 0) << "another host's daemon";
  StandOn("host1");
  lab::RunTraceDaemon("start");
  EXPECT_EQ(Daemon("status"), 0);
  EXPECT_EQ(Daemon("reload"), 2);
  EXPECT_EQ(LoggedEvents(), "stopped started ");
  EXPECT_EQ(Daemon("stop"), 0);
  std::filesystem::remove(ConfigFile());
  EXPECT_EQ(Daemon("restart"), 1);
  EXPECT_EQ(Daemon("status"), 3);
  const std::string script = "'" + HostPath("/etc/init.d/koreltraced") + "' start ";
  const auto start = [] { lab::RunTraceDaemon("start"); };
  EXPECT_EQ(Failure(start), script + "failed with status 1");
  EXPECT_FALSE(std::filesystem::exists(ConfigFile())) << "what is missing stays missing";
  std::filesystem::remove(HostPath(lab::kTraceDaemon));
  EXPECT_EQ(Failure(start), script + "could not be run");
}

TEST_F(TraceTest, RestartTakesTheVolumeThatTheFileNames) {
  const std::string own = "KORELTRACED_LAST_SELECTED_VOLUME=\"/var/log/koreltraces\"\n";
  EXPECT_THAT(ReadFile(ConfigFile()), testing::HasSubstr(own)) << "a fresh host's";
  const std::pair<std::string, std::string> cases[] = {
      {"A=1\n  KORELTRACED_VOLUME=\"/x y\\n\"\n",
       "A=1\n  KORELTRACED_VOLUME=\"/x y\\n\"\nKORELTRACED_LAST_SELECTED_VOLUME=\"/x y\\n\"\n"},
      {"KORELTRACED_LAST_SELECTED_VOLUME=\"/old\"\nKORELTRACED_VOLUME=\"\"",
       "KORELTRACED_VOLUME=\"\"\n" + own},
      {"KORELTRACED_VOLUME=/a\r\nKORELTRACED_VOLUME=/b\r\n",
       "KORELTRACED_VOLUME=/a\r\nKORELTRACED_VOLUME=/b\r\nKORELTRACED_LAST_SELECTED_VOLUME=/b\n"},
      {"#KORELTRACED_VOLUME=/a\n", "#KORELTRACED_VOLUME=/a\n" + own},
  };
  for (const auto& [before, after] : cases) {
    WriteFile(ConfigFile(), before);
    EXPECT_EQ(Daemon("restart"), 0);
    EXPECT_EQ(ReadFile(ConfigFile()), after);
  }
}

TEST_F(TraceTest, RootIsLaidOutOnceAndWholeByManyProcesses) {
  KorelUtil::GetNodeType();
  // As an older lab has it, and as a process leaves it that was killed in the midst.
  std::filesystem::remove_all(LabFile() + ".root");
  std::filesystem::create_directories(LabFile() + ".root/.host1/etc/init.d/koreltraced");
  const auto ask = [](int) {
    if (Daemon("status") != 0) lab::Fail("no daemon");
  };
  EXPECT_EQ(FailuresInProcesses(6, ask), 0);
  EXPECT_FALSE(std::filesystem::exists(LabFile() + ".root/.host1"));
}

}  // namespace
}  // namespace lab_test
