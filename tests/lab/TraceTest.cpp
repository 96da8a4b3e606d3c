#include <filesystem>
#include <fstream>

#include "lab/hostctl/HandedOut.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"
#include "lab/model/Trace.h"
#include "lab/model/TraceDaemon.h"
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
  static std::string ConfigFile() { return HostPath(lab::kTraceConfigFile); }
  static void Change(void (*change)(lab::Store&, const lab::Host&)) {
    lab::ChangeLab([&](lab::Store& store) { change(store, lab::CurrentHost(store)); });
  }
  /// What the lab has of the file; nothing when it has none.
  static std::optional<std::string> Kept(const std::string& path = lab::kTraceConfigFile) {
    const auto file = lab::ReadLab(
        [&](lab::Store& store) { return lab::FindFile(store, lab::CurrentHost(store), path); });
    return file ? std::optional(file->content) : std::nullopt;
  }
  static void Put(const lab::HostFile& file) {
    lab::ChangeLab([&](lab::Store& store) { lab::PutFile(store, lab::CurrentHost(store), file); });
  }
  static lab::TraceOptions Options() {
    return lab::ChangeLab(
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
  Change(lab::StopTraceDaemon);
  EXPECT_EQ(Daemon("status"), 3);
  Change(lab::StartTraceDaemon);
  EXPECT_EQ(Daemon("status"), 0);
  EXPECT_EQ(Daemon("nonsense"), 2);
  EXPECT_EQ(KorelUtil::KorelExec("/bin/true", "", false, true, false), -1) << "no such program";
  Change(lab::StopTraceDaemon);
  Change([](lab::Store& store, const lab::Host& host) {
    lab::RemoveFile(store, host, lab::kTraceConfigFile);
  });
  ExpectRefused([] { Change(lab::StartTraceDaemon); },
                "the trace daemon cannot start: host1 has no /etc/ostrel/korel/koreltraced.conf, "
                "or one too large; 'autocli lab file put' puts another one there");
  EXPECT_EQ(Daemon("restart"), 1);
  EXPECT_EQ(Kept(), std::nullopt) << "what is missing stays missing";
}

TEST_F(TraceTest, InitScriptAnswersWhatItIsTold) {
  const auto tell = [](std::optional<int> status, std::optional<int> restart) {
    lab::ChangeLab([&](lab::Store& store) {
      lab::SetTraceAnswers(store, lab::CurrentHost(store), {status, restart});
    });
  };
  tell(-1, 7);
  EXPECT_EQ(Daemon("status"), -1);
  ExpectRefused([] { EXPECT_EQ(Daemon("restart"), 7); }, "");
  tell(3, 0);
  EXPECT_EQ(Daemon("status"), 3);
  EXPECT_EQ(Daemon("restart"), 0);
  EXPECT_THAT(Kept(lab::kTraceLogFile).value_or(""), testing::EndsWith(" restarted\n"));
  tell({}, {});
  EXPECT_EQ(Daemon("status"), 0);
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
    EXPECT_EQ(Kept(), after);
  }
}

TEST_F(TraceTest, LogKeepsItsNewestLines) {
  for (int i = 0; i < 150; ++i) Daemon("restart");
  Change(lab::StopTraceDaemon);
  const std::string log = *Kept(lab::kTraceLogFile);
  EXPECT_LE(log.size(), 4096U);
  EXPECT_GT(log.size(), 4000U);
  EXPECT_EQ(log[4], '-') << "a line is whole";
  EXPECT_THAT(log, testing::EndsWith("stopped\n"));
}

TEST_F(TraceTest, WhatIsWrittenToAHandedOutFileIsTakenInByTheNextOperation) {
  const std::string path = ConfigFile();
  const std::string before = ReadFile(path);
  WriteFile(path, "A=1\n");
  EXPECT_EQ(Kept(), before);
  EXPECT_EQ(Daemon("status"), 0);
  EXPECT_EQ(Kept(), "A=1\n");
  // What nobody wrote to is not taken in over what is newer.
  Put({lab::kTraceConfigFile, "B=2\n", false});
  Daemon("status");
  EXPECT_EQ(Kept(), "B=2\n");
  EXPECT_EQ(ReadFile(ConfigFile()), "B=2\n") << "read again each time";
  WriteFile(ConfigFile(), "C=3\n");
  HostControl().reset();
  EXPECT_EQ(Kept(), "C=3\n") << "with the end of a KorelInfo";
  lab::Store::CloseForProcess();
  EXPECT_EXIT(
      {
        WriteFile(ConfigFile(), "D=4\n");
        std::exit(0);
      },
      testing::ExitedWithCode(0), "");
  EXPECT_EQ(Kept(), "D=4\n") << "with the end of the process";
  WriteFile(ConfigFile(), "E=5\n");
  Change([](lab::Store& store, const lab::Host& host) {
    lab::RemoveFile(store, host, lab::kTraceConfigFile);
  });
  EXPECT_EQ(Daemon("status"), 0);
  EXPECT_EQ(Kept(), std::nullopt) << "removed while it was open";
  Put({lab::kTraceConfigFile, "F=6\n", false});
  const std::string large(lab::kMostFileBytes + 1, 'x');
  WriteFile(ConfigFile(), large);
  ExpectRefused([] { Daemon("restart"); },
                "a host's file holds at most 64 KiB, '/etc/ostrel/korel/koreltraced.conf' would "
                "hold 65537 bytes; it stays as it was");
  EXPECT_EQ(Daemon("status"), 0) << "said once";
}

TEST_F(TraceTest, HandedOutFilesAreThoseOfTheLabAlone) {
  EXPECT_FALSE(std::filesystem::exists(HostPath("/etc/passwd")));
  for (const auto& [path, message] : std::vector<std::pair<std::string, std::string>>{
           {"/etc/..", "'/etc/..' has a \"..\" in it"},
           {"etc", "'etc' is not an absolute path"},
           {"/etc/", "'/etc/' is no path of a file"}}) {
    ExpectRefused([&, &tried = path] { HostPath(tried); }, message);
  }
  for (const std::string content : {"", "A=1\n"}) {
    Put({"/etc/fixed", content, true});
    std::ofstream file(HostPath("/etc/fixed"), std::ios::binary);
    file << "B=2\n";
    file.close();
    EXPECT_FALSE(file) << "also for root";
    Daemon("status");
    EXPECT_EQ(Kept("/etc/fixed"), content);
  }
}

}  // namespace
}  // namespace lab_test
