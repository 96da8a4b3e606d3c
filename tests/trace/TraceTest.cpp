#include "tests/support/Files.h"
#include "tests/support/RecordingHost.h"

namespace test {
namespace {

const std::string kStatus = "KorelExec /etc/init.d/koreltraced status false true false";
const std::string kRestart = "KorelExec /etc/init.d/koreltraced restart false true false";

/// A host with a configuration file of that content.
class Traced : public testing::Test {
 protected:
  Traced() {
    host.root = folder.path;
    std::filesystem::create_directories(folder / "etc/ostrel/korel");
  }

  void Write(const std::string& text) const { WriteFile(file, text); }
  std::string Content() const { return ReadFile(file); }

  Folder folder;
  RecordingHost host;
  const std::string file = folder / "etc/ostrel/korel/koreltraced.conf";
};

std::string Shown(const std::string& files = "8", const std::string& size = "45",
                  const std::string& syslog = "true",
                  const std::string& directory = "No volume selected.") {
  return "KorelTraceGet{KOREL Traces Directory=" + directory +
         ", Number Of Files To Rotate=" + files + ", Maximum Trace File Size=" + size +
         ", Log Urgent Traces To Syslog=" + syslog + "}";
}

TEST_F(Traced, GetReadsLinesByTheirRules) {
  const std::string longLine(1 << 20, 'x');
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", Shown()},
      {"no equals sign\n=\n = \n\n", Shown()},
      {"  KORELTRACED_ROTATE_MAX_FILES=12\n", Shown("12")},
      {"#KORELTRACED_ROTATE_MAX_FILES=12\n", Shown()},
      {"x KORELTRACED_ROTATE_MAX_FILES=12\n", Shown()},
      {"KORELTRACED_URGENT_ROTATE_MAX_FILES=12\n", Shown()},
      {"KORELTRACED_ROTATE_MAX_FILES =12\n", Shown()},
      {"KORELTRACED_ROTATE_MAX_FILES=12\nKORELTRACED_ROTATE_MAX_FILES= 13", Shown("13")},
      {"KORELTRACED_ROTATE_MAX_FILES=twelve\nKORELTRACED_ROTATE_FILE_SIZE=9x\n", Shown("0", "9")},
      {"KORELTRACED_ROTATE_MAX_FILES=\nKORELTRACED_ROTATE_FILE_SIZE=7\n"
       "KORELTRACED_ROTATE_FILE_SIZE= \t\r\nKORELTRACED_LOG_URGENT_TO_SYSLOG=",
       Shown("8", "7")},
      {"KORELTRACED_ROTATE_MAX_FILES=99999999999999999999\n"
       "KORELTRACED_LAST_SELECTED_VOLUME=\"/v\"\nKORELTRACED_LAST_SELECTED_VOLUME=",
       Shown("9223372036854775807", "45", "true", "")},
      {"KORELTRACED_ROTATE_FILE_SIZE=7\r\nKORELTRACED_LOG_URGENT_TO_SYSLOG=0\r\n",
       Shown("8", "7", "false")},
      {"KORELTRACED_LAST_SELECTED_VOLUME=\"/a \"b=c\"\nKORELTRACED_VOLUME=\"/other\"",
       Shown("8", "45", "true", "/a b=c")},
      {longLine + "\nKORELTRACED_ROTATE_FILE_SIZE=7\n" + longLine, Shown("8", "7")},
  };
  for (const auto& [text, outcome] : cases) {
    SCOPED_TRACE(text.substr(0, 100));
    Write(text);
    EXPECT_EQ(RunLine("korel trace get"), outcome);
  }
}

TEST_F(Traced, SetRewritesEveryLine) {
  Write("KORELTRACED_LSOM_ROTATE_FILE_SIZE=3\nKORELTRACED_VOLUME=\"/v\"\nUNKNOWN=1\n");
  EXPECT_EQ(RunLine("korel trace set -s 100 --lsom-verbose-size 9"), "true");
  EXPECT_EQ(Content(),
            "KORELTRACED_VOLUME=\"/v\"\n"
            "KORELTRACED_ROTATE_MAX_FILES=8\n"
            "KORELTRACED_LOG_URGENT_TO_SYSLOG=1\n"
            "KORELTRACED_ROTATE_FILE_SIZE=100\n"
            "KORELTRACED_URGENT_ROTATE_MAX_FILES=8\n"
            "KORELTRACED_URGENT_ROTATE_FILE_SIZE=10\n"
            "KORELTRACED_DOM_OBJ_ROTATE_MAX_FILES=8\n"
            "KORELTRACED_DOM_OBJ_ROTATE_FILE_SIZE=45\n"
            "KORELTRACED_LSOM_ROTATE_MAX_FILES=8\n"
            "KORELTRACED_LSOM_ROTATE_FILE_SIZE=3\n"
            "KORELTRACED_LSOM_VERBOSE_ROTATE_MAX_FILES=8\n"
            "KORELTRACED_LSOM_VERBOSE_ROTATE_FILE_SIZE=9\n");
  EXPECT_EQ(host.calls, (std::vector<std::string>{"SetTracedLogOptions [normal_size_in_kb=100]",
                                                  kStatus, kRestart}));
  const std::string rewritten = Content();
  host.calls.clear();
  host.status = 3;
  EXPECT_EQ(RunLine("korel trace set -r false"), "true");
  EXPECT_EQ(Content(), rewritten);
  EXPECT_EQ(host.calls, (std::vector<std::string>{"SetTracedLogOptions []", kStatus}));
}

TEST_F(Traced, SetPassesWhatWasGivenAndResetAll) {
  Write("");
  host.status = 3;
  EXPECT_EQ(RunLine("korel trace set -p /t -f 1 -d 2 -u 3 --lsom-num-files 4 -l no"), "true");
  EXPECT_EQ(RunLine("korel trace set -r true"), "true");
  ASSERT_EQ(host.calls.size(), 4U);
  EXPECT_EQ(
      host.calls[0],
      "SetTracedLogOptions [log_structured_object_manager_num_of_files=4,normal_num_of_files=1,"
      "normal_path=/t,object_manager_num_of_files=2,urgent_num_of_files=3,"
      "urgent_to_syslog=false]");
  EXPECT_EQ(host.calls[2],
            "SetTracedLogOptions [log_structured_object_manager_num_of_files=8,"
            "log_structured_object_manager_size_in_kb=45,normal_num_of_files=8,normal_path=,"
            "normal_size_in_kb=45,object_manager_num_of_files=8,object_manager_size_in_kb=45,"
            "urgent_num_of_files=8,urgent_size_in_kb=10,urgent_to_syslog=true]");
}

TEST_F(Traced, AFailureEndsACommandWhereItIs) {
  namespace fs = std::filesystem;
  const std::string size = "KORELTRACED_ROTATE_FILE_SIZE=7\n";
  const Hosts hosts = {
      {"not checked", [](RecordingHost& other) { other.status = -1; }},
      {"stopped", [](RecordingHost& other) { other.status = 3; }},
      {"no restart", [](RecordingHost& other) { other.restarted = 5; }},
      {"no file", [&](RecordingHost&) { fs::remove(file); }},
      {"folder", [&](RecordingHost&) { fs::create_directory(file); }},
      {"traced",
       [&](RecordingHost& other) {
         other.root = folder.path;
         fs::remove(file);
         Write(size);
       }},
      // Which root cannot write either.
      {"read-only", [&](RecordingHost&) { fs::create_symlink("/proc/version", file); }}};
  const Names names = {{"$status", kStatus},
                       {"$set", "SetTracedLogOptions [normal_size_in_kb=1]"},
                       {"$restart", kRestart},
                       {"$refer", "Refer /var/log/syslog.log for details."}};
  Check(hosts, names, R"(
[traced, no file] trace get / [traced, no file, folder] trace get -> error: Error opening Korel trace config file for reading. | none <- $status
[traced, no file, stopped] trace get -> error: Korel is not enabled on this host. | none <- $status
[not checked] trace get -> error: Checking koreltraced status failed.Refer to /var/log/syslog.log for details. | none <- $status
[traced] trace set -> error: No options provided. | none
[traced] trace set -r false -s 1 -> error: reset cannot be used with other options. | none
[traced, no file] trace set -s 1 -> error: Error opening Korel Trace Config File for reading. | none
[traced, no file, read-only] trace set -s 1 -> error: Error opening Korel Trace Config File for writing. | none <- $set
[traced, no restart] trace set -s 1 -> error: Failed to restart koreltraced: 5;  $refer | none <- $set | $status | $restart
[traced, not checked] trace set -s 1 -> error: Failed to check koreltraced status. $refer | none <- $set | $status
[traced, SetTracedLogOptions fails] trace set -s 1 -> error: no luck $refer | none <- $set
)");
  EXPECT_EQ(Content(), size) << "the host refused its options";
}

TEST_F(Traced, SetWritesTheVeryFile) {
  namespace fs = std::filesystem;
  const std::string target = host.root + "/target";
  WriteFile(target, "KORELTRACED_ROTATE_FILE_SIZE=7\n");
  fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink(target, file);
  EXPECT_EQ(RunLine("korel trace set -s 1"), "true");
  EXPECT_TRUE(fs::is_symlink(file));
  EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_NE(Content().find("KORELTRACED_ROTATE_FILE_SIZE=1\n"), std::string::npos);
}

}  // namespace
}  // namespace test
