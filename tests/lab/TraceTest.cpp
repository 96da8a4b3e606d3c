#include <filesystem>
#include <fstream>
#include <sstream>

#include "lab/hostctl/HandedOut.h"
#include "lab/model/HostFiles.h"
#include "lab/model/Lab.h"
#include "lab/model/Trace.h"
#include "lab/model/TraceDaemon.h"
#include "tests/lab/Script.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::Pair;
using Tovrin::Misc::HostPath;

class TraceTest : public RowsTest {
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
  KorelUtil::SetTracedLogOptions(
      {{"normal_path", "/ ~\xc3\xbf"}, {"urgent_size_in_kb", "9223372036854775807"}});
  KorelUtil::SetTracedLogOptions({{"normal_path", ""}, {"object_manager_size_in_kb", "0"}});
  KorelUtil::SetTracedLogOptions({{"urgent_to_syslog", "false"}});
  EXPECT_THAT(Options(), testing::UnorderedElementsAre(
                             Pair("normal_path", ""), Pair("object_manager_size_in_kb", "0"),
                             Pair("urgent_size_in_kb", "9223372036854775807"),
                             Pair("urgent_to_syslog", "false")));
  const std::string path =
      "trace option normal_path must be an absolute path without quotation marks and control "
      "characters, or be empty, got ";
  const std::string number = "trace option normal_num_of_files must be a number of 0 or more, got ";
  std::vector<std::tuple<std::string, std::string, std::string>> cases = {
      {"normal_paths", "/", "no trace option is named 'normal_paths', did you mean 'normal_path'?"},
      {"urgent_to_syslog", "1", "trace option urgent_to_syslog must be true or false, got '1'"},
  };
  for (const char* bad : {"a", "/a\"b", "/a\n", "/\x1f", "/\x7f"}) {
    cases.emplace_back("normal_path", bad, path + "'" + bad + "'");
  }
  for (const char* bad : {"", "7x", "-1", "9223372036854775808"}) {
    cases.emplace_back("normal_num_of_files", bad, number + "'" + bad + "'");
  }
  for (const auto& [name, value, message] : cases) {
    const std::unordered_map<std::string, std::string> options{
        {"log_structured_object_manager_size_in_kb", "5"}, {name, value}};
    ExpectRefused([&] { KorelUtil::SetTracedLogOptions(options); }, message);
  }
  StandOn("host2");
  EXPECT_TRUE(Options().empty());
}

TEST_F(TraceTest, TheInitScriptAnswersAndTheLogSaysWhatWasDone) {
  AddHostsUpTo(2);
  // Arguments of the script one after the other; its answers; what is in the log.
  EachRow(R"(
status                                     -> 0 |
start                                      -> 0 |
stop status stop                           -> 0 3 0 | stopped
stop start status                          -> 0 0 0 | stopped started
stop restart status                        -> 0 0 0 | stopped restarted
restart restart                            -> 0 0 | restarted restarted
reload                                     -> 2 |
told:-1:7 status restart start stop        -> -1 7 0 0 | stopped
told:3:0 status restart                    -> 3 0 | restarted
told:3:0 told:: status stop status restart -> 0 0 3 0 | stopped restarted
told:0: stop status restart                -> 0 0 0 | stopped restarted
stop told::5 restart status                -> 0 5 3 | stopped
gone status restart status stop start      -> 0 1 0 0 1 | stopped
large restart stop start                   -> 1 0 1 | stopped
fixed restart stop start status            -> 0 0 0 0 | restarted stopped started
)",
          [&](const std::string& script, const std::string& expected) {
            std::istringstream words(script);
            std::string answers;
            for (std::string word; words >> word;) {
              if (word == "gone") {
                Change([](lab::Store& store, const lab::Host& host) {
                  lab::RemoveFile(store, host, lab::kTraceConfigFile);
                });
              } else if (word == "fixed" || word == "large") {
                Put({lab::kTraceConfigFile, std::string(word == "large" ? 65536 : 3, 'x'),
                     word == "fixed"});
              } else if (word.starts_with("told:")) {
                const auto number = [](const std::string& text) {
                  return text.empty() ? std::nullopt : std::optional(std::stoi(text));
                };
                const std::size_t second = word.rfind(':');
                lab::ChangeLab([&](lab::Store& store) {
                  lab::SetTraceAnswers(
                      store, lab::CurrentHost(store),
                      {number(word.substr(5, second - 5)), number(word.substr(second + 1))});
                });
              } else {
                answers += std::to_string(Daemon(word)) + " ";
              }
            }
            std::istringstream log(Kept(lab::kTraceLogFile).value_or(""));
            answers += "|";
            for (std::string time, name, event; log >> time >> name >> event;) {
              answers += " " + event;
            }
            EXPECT_EQ(answers, expected);
            StandOn("host2");
            EXPECT_EQ(Daemon("status"), 0) << "each host has its own";
            StandOn("host1");
          });
  EXPECT_EQ(KorelUtil::KorelExec("/bin/true", "", false, true, false), -1) << "no such program";
  Change(lab::StopTraceDaemon);
  Change([](lab::Store& store, const lab::Host& host) {
    lab::RemoveFile(store, host, lab::kTraceConfigFile);
  });
  ExpectRefused([] { Change(lab::StartTraceDaemon); },
                "the trace daemon cannot start: host1 has no /etc/ostrel/korel/koreltraced.conf, "
                "or one too large; 'autocli lab file put' puts another one there");
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
    Put({lab::kTraceLogFile, "x\n" + std::string(size - line - 3, 'y') + "\n", false});
    Daemon("restart");
    EXPECT_EQ(Kept(lab::kTraceLogFile)->size(), kept) << size;
  }
}

TEST_F(TraceTest, AFreshHostsConfigurationHasTheDefaults) {
  std::string lines = "KORELTRACED_VOLUME=\"\"\nKORELTRACED_LOG_URGENT_TO_SYSLOG=1\n";
  for (const std::string kind : {"", "DOM_OBJ_", "LSOM_", "LSOM_VERBOSE_", "URGENT_"}) {
    lines += "KORELTRACED_" + kind + "ROTATE_MAX_FILES=8\nKORELTRACED_" + kind +
             "ROTATE_FILE_SIZE=" + (kind == "URGENT_" ? "10" : "45") + "\n";
  }
  lines += "KORELTRACED_LAST_SELECTED_VOLUME=\"/var/log/koreltraces\"\n";
  std::vector<std::string> there;
  std::vector<std::string> expected;
  std::istringstream kept(*Kept());
  std::istringstream all(lines);
  for (std::string text; std::getline(kept, text);) there.push_back(text);
  for (std::string text; std::getline(all, text);) expected.push_back(text);
  EXPECT_THAT(there, testing::UnorderedElementsAreArray(expected));
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
  const std::pair<std::string, const char*> paths[] = {
      {"/..", " has a \"..\" in it"},
      {"/a/../b", " has a \"..\" in it"},
      {"/a/..", " has a \"..\" in it"},
      {"", " is not an absolute path"},
      {"etc", " is not an absolute path"},
      {"/etc/", " is no path of a file"},
      {std::string("/a\0b", 4), " is no path of a file"},
      {"/" + std::string(1000, 'x'), " is no path of a file"}};
  for (const auto& [path, message] : paths) {
    const std::string cut = path.size() > 100 ? path.substr(0, 100) + "..." : path;
    ExpectRefused([&, &tried = path] { HostPath(tried); }, "'" + cut + "'" + message);
    ExpectRefused([&, &tried = path] { Put({tried, "", false}); }, "'" + cut + "'" + message);
  }
  for (const std::string& path : {"/" + std::string(999, 'x'), std::string("/..a/b../...")}) {
    Put({path, std::string(65536, 'x'), false});
    EXPECT_EQ(Kept(path)->size(), 65536U);
    ExpectRefused(
        [&] {
          Put({path, std::string(65537, 'x'), false});
        },
        "a host's file holds at most 64 KiB, '" + path.substr(0, 100) +
            (path.size() > 100 ? "...'" : "'") + " would hold 65537 bytes");
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
