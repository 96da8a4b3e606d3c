#include <filesystem>
#include <fstream>
#include <sstream>

#include "lab/hostctl/HandedOut.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Trace.h"
#include "lab/model/TraceDaemon.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using Tovrin::Misc::HostPath;

class TraceTest : public RowsTest {
 protected:
  static int Daemon(const std::string& argument) {
    return KorelUtil::KorelExec(lab::kTraceDaemon, argument, false, true, false);
  }
  static std::string ConfigFile() { return HostPath(lab::kTraceConfigFile); }
  /// What the lab has of the file; nothing when it has none.
  static std::optional<std::string> Kept(const std::string& path = lab::kTraceConfigFile) {
    const auto file = Own(lab::FindFile, path);
    return file ? std::optional(file->content) : std::nullopt;
  }
};

TEST_F(TraceTest, OptionsAreKeptByHostAndRefusedWhole) {
  AddHostsUpTo(2);
  const auto options = [] {
    StandOn("host1");
    std::string all;
    for (const auto& [name, value] : Own(lab::TraceOptionsOf)) all += name + "=" + value + ";";
    return all;
  };
  // With each option goes a number of urgent files, 3.
  Expect(options, R"(
2 option normal_path /b                        ->
1 option normal_path /a; 1 option normal_path -; 1 option urgent_to_syslog true -> normal_path=;urgent_num_of_files=3;urgent_to_syslog=true;
1 option normal_path /%20~; 1 option urgent_to_syslog false -> normal_path=/ ~;urgent_num_of_files=3;urgent_to_syslog=false;
1 option normal_size_in_kb 9223372036854775807 -> normal_size_in_kb=9223372036854775807;urgent_num_of_files=3;
1 option urgent_size_in_kb 0                   -> urgent_num_of_files=3;urgent_size_in_kb=0;
)");
  ExpectRefusals(R"(
1 option normal_paths /      -> no trace option is named 'normal_paths', did you mean 'normal_path'?
1 option urgent_to_syslog 1  -> trace option urgent_to_syslog must be true or false, got '1'
1 option normal_path a / 1 option normal_path /a%22b / 1 option normal_path /%0a / 1 option normal_path /%1f / 1 option normal_path /%7f -> trace option normal_path must be an absolute path without quotation marks...
1 option urgent_size_in_kb - / 1 option urgent_size_in_kb 7x / 1 option normal_num_of_files 9223372036854775808 -> ... must be a number of 0 or more, got '...
1 option urgent_size_in_kb -1 -> ... must be a number of 0 or more, got '-1'
)");
}

TEST_F(TraceTest, TheInitScriptAnswersAndTheLogSaysWhatWasDone) {
  AddHostsUpTo(2);
  const auto log = [] {
    EXPECT_EQ(Play("2 exec status 0"), "") << "each host has its own";
    StandOn("host1");
    std::istringstream lines(Kept(lab::kTraceLogFile).value_or(""));
    std::string events;
    for (std::string time, name, event; lines >> time >> name >> event;) {
      events += event + " ";
      std::getline(lines, event);
    }
    return events + std::to_string(Daemon("status"));
  };
  Expect(log, R"(
1 exec start 0 / 1 exec reload 2 / 1 file /var/log/koreltraced.log 0 fixed; 1 exec restart 0 -> 0
1 exec stop 0 / 1 exec stop 0; 1 exec stop 0 / 1 tell so 5; 1 exec stop 0; 1 exec restart 5 -> stopped 3
1 unfile @conf; 1 exec restart 1; 1 exec status 0; 1 exec stop 0; 1 exec start 1 -> refused: stopped refused: 3
1 file @conf 65536; 1 exec stop 0; 1 exec start 1   -> stopped refused: 3
1 file @conf 65536 fixed; 1 exec restart 0          -> restarted 0
1 exec stop 0; 1 exec start 0 / 1 file @conf 3 fixed; 1 exec stop 0; 1 exec start 0 -> stopped started 0
1 exec stop 0; 1 exec restart 0 / 1 tell 0 so; 1 exec stop 0; 1 exec restart 0 -> stopped restarted 0
1 exec restart 0; 1 exec restart 0                  -> restarted restarted 0
1 tell -1 7; 1 exec restart 7; 1 exec start 0       -> -1
1 tell 3 0; 1 exec restart 0                        -> restarted 3
1 tell 3 0; 1 tell so so; 1 exec restart 0          -> restarted 0
)");
  EXPECT_EQ(KorelUtil::KorelExec("/bin/true", "", false, true, false), -1) << "no such program";
  EXPECT_EQ(Play("1 exec stop 0; 1 unfile @conf"), "");
  ExpectRefused([] { Own(lab::StartTraceDaemon); },
                "the trace daemon cannot start: host1 has no /etc/ostrel/korel/koreltraced.conf; "
                "'autocli lab file put' puts another one there");
}

TEST_F(TraceTest, AConfigurationThatCannotBeUsedIsRefusedAndTheDaemonGoesOn) {
  const auto restart = [](const std::string& config, const std::string& fault) {
    WriteFile(ConfigFile(), Long(config));
    EXPECT_EQ(Daemon("restart"), fault.empty() ? 0 : 1);
    EXPECT_EQ(Daemon("status"), 0) << "it goes on";
    if (fault.empty()) return;
    EXPECT_EQ(Kept(), Long(config));
    const std::string where = "/etc/ostrel/korel/koreltraced.conf of host1, line " + fault;
    EXPECT_THAT(*Kept(lab::kTraceLogFile), testing::EndsWith(" refused: " + where + "\n"));
    EXPECT_EQ(Daemon("stop"), 0);
    EXPECT_EQ(Daemon("restart"), 1);
    EXPECT_EQ(Daemon("status"), 3);
    const std::string reason = "the trace daemon cannot start: " + where + "; ";
    ExpectRefused([] { Own(lab::StartTraceDaemon); },
                  reason + "'korel trace set --reset true' mends the file");
    Own(lab::PutFile, lab::HostFile{lab::kTraceConfigFile, Long(config), true});
    ExpectRefused([] { Own(lab::StartTraceDaemon); },
                  reason + "'autocli lab file put' puts another one there");
  };
  EachRow(R"(
A=1%0a%09%20KORELTRACED_LSOM_VERBOSE_ROTATE_MAX_FILES=0%0d / KORELTRACED_LSOM_VERBOSE_ROTATE_MAX_FILES=9223372036854775807%0a ->
KORELTRACED_ROTATE_MAX_FILES=%20%09%0a / KORELTRACED_ROTATE_FILE_SIZE=1%0a / KORELTRACED_ROTATE_FILE_SIZE= 4095 %0a ->
KORELTRACED_LOG_URGENT_TO_SYSLOG=0%0a / KORELTRACED_VOLUME=/a b%0a / KORELTRACED_VOLUME=""%0a / KORELTRACED_VOLUME=%0a ->
KORELTRACED_ROTATE_FILE_SIZE%0aA=1%0aXKORELTRACED_ROTATE_FILE_SIZE=0%0a ->
A=1%0a%09 KORELTRACED_LSOM_VERBOSE_ROTATE_MAX_FILES=-3%0a -> 2: KORELTRACED_LSOM_VERBOSE_ROTATE_MAX_FILES must be a number of 0 or more, got '-3'
KORELTRACED_ROTATE_MAX_FILES=9223372036854775808 -> 1: KORELTRACED_ROTATE_MAX_FILES must be a number of 0 or more, got '9223372036854775808'
KORELTRACED_ROTATE_MAX_FILES=8 x%0a -> 1: KORELTRACED_ROTATE_MAX_FILES must be a number of 0 or more, got '8 x'
KORELTRACED_ROTATE_FILE_SIZE=0%0aKORELTRACED_ROTATE_FILE_SIZE=1%0a -> 1: KORELTRACED_ROTATE_FILE_SIZE must be a number from 1 to 4095, got '0'
KORELTRACED_ROTATE_FILE_SIZE=4096%0a -> 1: KORELTRACED_ROTATE_FILE_SIZE must be a number from 1 to 4095, got '4096'
KORELTRACED_ROTATE_FILE_SIZE="45"%0a -> 1: KORELTRACED_ROTATE_FILE_SIZE must be a number from 1 to 4095, got '"45"'
KORELTRACED_LOG_URGENT_TO_SYSLOG=2%0a -> 1: KORELTRACED_LOG_URGENT_TO_SYSLOG must be 0 or 1, got '2'
KORELTRACED_VOLUME="a"%0a -> 1: KORELTRACED_VOLUME must be an absolute path, or empty, got '"a"'
KORELTRACED_VOLUME="%0a -> 1: KORELTRACED_VOLUME must be an absolute path, or empty, got '"'
KORELTRACED_VOLUME=/a"b%0a -> 1: KORELTRACED_VOLUME must be an absolute path, or empty, got '/a"b'
)",
          restart);
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

TEST_F(TraceTest, LogKeepsItsNewestLinesOf4096Bytes) {
  Daemon("restart");
  const std::size_t line = Kept(lab::kTraceLogFile)->size();
  for (const auto& [size, kept] : {std::pair(4096U, 4096U), {4097U, 4095U}, {4098U, 4096U}}) {
    Own(lab::PutFile,
        lab::HostFile{lab::kTraceLogFile, "x\n" + std::string(size - line - 3, 'y') + "\n", false});
    Daemon("restart");
    EXPECT_EQ(Kept(lab::kTraceLogFile)->size(), kept) << size;
  }
}

TEST_F(TraceTest, WhatIsWrittenToAHandedOutFileIsTakenInByTheNextOperation) {
  const auto keptAfter = [](const std::string& argument) {
    Daemon(argument);
    return Kept().value_or("none");
  };
  const std::string path = ConfigFile();
  const std::string before = ReadFile(path);
  WriteFile(path, "A=1\n");
  EXPECT_EQ(Kept(), before);
  EXPECT_EQ(keptAfter("status"), "A=1\n");
  // What nobody wrote to is not taken in over what is newer.
  Own(lab::PutFile, lab::HostFile{lab::kTraceConfigFile, "B=2\n", false});
  EXPECT_EQ(keptAfter("status"), "B=2\n");
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
  EXPECT_EQ(Play("1 unfile @conf"), "");
  EXPECT_EQ(keptAfter("status"), "none") << "removed while it was open";
  Own(lab::PutFile, lab::HostFile{lab::kTraceConfigFile, "F=6\n", false});
  WriteFile(ConfigFile(), std::string(65536, 'x'));
  EXPECT_EQ(keptAfter("status").size(), 65536U);
  WriteFile(ConfigFile(), std::string(65537, 'x'));
  ExpectRefused([] { Daemon("restart"); },
                "a host's file holds at most 64 KiB, '/etc/ostrel/korel/koreltraced.conf' would "
                "hold 65537 bytes; it stays as it was");
  EXPECT_EQ(Daemon("status"), 0) << "said once";
}

TEST_F(TraceTest, HandedOutFilesAreThoseOfTheLabAlone) {
  AddHostsUpTo(2);
  EXPECT_FALSE(std::filesystem::exists(HostPath("/etc/passwd")));
  ExpectRefused([] { HostPath("/etc/.."); }, "'/etc/..' has a \"..\" in it");
  const auto size = [] {
    StandOn("host1");
    return std::to_string(Kept(Long("/(x)999")).value_or("").size());
  };
  Expect(size, R"(
1 file /..a/b../... 65536                                  -> 0
1 file /(x)999 65536                                       -> 65536
1 file /(x)999 1 fixed; 1 file /(x)999 2; 2 file /(x)999 3 -> 2
)");
  ExpectRefusals(R"(
1 file /.. 1 / 1 file /a/../b 1 / 1 file /a/.. 1 -> '...' has a ".." in it
1 file - 1 / 1 file etc 1 / 1 unfile a -> '...' is not an absolute path
1 file /etc/ 1 / 1 file %2f 1 / 1 file /a%00b 1 / 1 file /(x)1000 1 -> '...' is no path of a file
1 file /a 65537          -> a host's file holds at most 64 KiB, '/a' would hold 65537 bytes
2 file /a 1; 1 unfile /a -> host1 has no file '/a'; 'autocli lab file list' shows those it has
)");
  Again();
  for (const std::string content : {"", "A=1\n"}) {
    Own(lab::PutFile, lab::HostFile{"/etc/fixed", content, true});
    std::ofstream file(HostPath("/etc/fixed"), std::ios::binary);
    file << "B=2\n";
    file.close();
    EXPECT_FALSE(file) << "also for root";
    std::fstream(HostPath("/etc/fixed"), std::ios::in | std::ios::out) << "C" << std::flush;
    Daemon("status");
    EXPECT_EQ(Kept("/etc/fixed"), content);
  }
}

}  // namespace
}  // namespace lab_test
