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
  static lab::TraceOptions Options() {
    return lab::InLab(
        [](lab::Store& store) { return lab::TraceOptionsOf(store, lab::CurrentHost(store)); });
  }
};

TEST_F(TraceTest, OptionsAreKeptByHostAndRefusedWhole) {
  AddHostsUpTo(2);
  KorelUtil::SetTracedLogOptions({{"normal_path", "/a b"}, {"urgent_to_syslog", "true"}});
  KorelUtil::SetTracedLogOptions({{"normal_path", ""}, {"object_manager_size_in_kb", "0"}});
  KorelUtil::SetTracedLogOptions({{"urgent_to_syslog", "false"}});
  EXPECT_THAT(Options(), testing::UnorderedElementsAre(Pair("normal_path", ""),
                                                       Pair("object_manager_size_in_kb", "0"),
                                                       Pair("urgent_to_syslog", "false")));
  const std::string path =
      "trace option normal_path must be an absolute path without quotation marks and control "
      "characters, or be empty, got ";
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {"normal_paths", "/", "no trace option is named 'normal_paths', did you mean 'normal_path'?"},
      {"normal_path", "/a\"b", path + "'/a\"b'"},
      {"normal_num_of_files", "7x",
       "trace option normal_num_of_files must be a number of 0 or more, got '7x'"},
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
  lab::RunTraceDaemon("stop");
  EXPECT_EQ(Daemon("status"), 3);
  lab::RunTraceDaemon("start");
  EXPECT_EQ(Daemon("status"), 0);
  lab::RunTraceDaemon("stop");
  std::filesystem::remove(ConfigFile());
  EXPECT_EQ(Failure([] { lab::RunTraceDaemon("start"); }),
            "'" + HostPath("/etc/init.d/koreltraced") + "' start failed with status 1");
  EXPECT_FALSE(std::filesystem::exists(ConfigFile())) << "what is missing stays missing";
}

TEST_F(TraceTest, RestartTakesTheVolumeThatTheFileNames) {
  const std::string own = "KORELTRACED_LAST_SELECTED_VOLUME=\"/var/log/koreltraces\"\n";
  EXPECT_THAT(ReadFile(ConfigFile()), testing::HasSubstr(own)) << "a fresh host's";
  const std::pair<std::string, std::string> cases[] = {
      {"A=1\n  KORELTRACED_VOLUME=\"/x y\\n\"\n",
       "A=1\n  KORELTRACED_VOLUME=\"/x y\\n\"\nKORELTRACED_LAST_SELECTED_VOLUME=\"/x y\\n\"\n"},
      {"KORELTRACED_LAST_SELECTED_VOLUME=\"/old\"\nKORELTRACED_VOLUME=\"\"",
       "KORELTRACED_VOLUME=\"\"\n" + own},
  };
  for (const auto& [before, after] : cases) {
    WriteFile(ConfigFile(), before);
    EXPECT_EQ(Daemon("restart"), 0);
    EXPECT_EQ(ReadFile(ConfigFile()), after);
  }
}

}  // namespace
}  // namespace lab_test
