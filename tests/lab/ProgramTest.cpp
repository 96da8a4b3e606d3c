#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;

class ProgramTest : public LabTest {
 protected:
  /// Puts a script where the host finds "/bin/tool".
  void WriteTool(const std::string& text) {
    const std::string path = Tovrin::Misc::HostPath("/bin/tool");
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    WriteFile(path, text);
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  }

  static int Run(const std::string& arguments) {
    return KorelUtil::KorelExec("/bin/tool", arguments, false, true, false);
  }
};

TEST_F(ProgramTest, HostPathsLieUnderTheHostsOwnRoot) {
  AddHostsUpTo(2);
  EXPECT_EQ(Tovrin::Misc::HostPath("/etc/x"), LabFile() + ".root/host1/etc/x");
  StandOn("host2");
  EXPECT_EQ(Tovrin::Misc::HostPath("/"), LabFile() + ".root/host2/");
  const std::pair<std::string, std::string> refusals[] = {
      {"", "'' is not an absolute path"},
      {"etc/x", "'etc/x' is not an absolute path"},
      {"/etc/../../x", "'/etc/../../x' has a \"..\" in it"},
      {"/etc/..", "'/etc/..' has a \"..\" in it"}};
  for (const auto& [path, message] : refusals) {
    EXPECT_EQ(Failure([&, &tried = path] { Tovrin::Misc::HostPath(tried); }), message);
  }
  EXPECT_EQ(Tovrin::Misc::HostPath("/etc/..x"), LabFile() + ".root/host2/etc/..x");
}

TEST_F(ProgramTest, AnswersHowTheProgramEnded) {
  EXPECT_EQ(Run("x"), -1) << "no such program";
  WriteTool("#!/bin/sh\ncase $1 in exit) exit $2;; kill) kill -9 $$;; esac\n");
  EXPECT_EQ(Run("exit 3"), 3);
  EXPECT_EQ(Run(" exit  0 "), 0);
  EXPECT_EQ(Run("kill"), 128 + 9);
  EXPECT_NE(Failure([] { KorelUtil::KorelExec("tool", "", false, true, false); }), "");
}

TEST_F(ProgramTest, ArgumentsMeetNoShell) {
  WriteTool("#!/bin/sh\nprintf '%s,' \"$@\" > \"$1\"\n");
  EXPECT_EQ(Run(Path("out") + " $(id) ; *"), 0);
  EXPECT_EQ(ReadFile(Path("out")), Path("out") + ",$(id),;,*,");
}

TEST_F(ProgramTest, ProgramMayUseTheLabItself) {
  // It would wait for the lab in vain if the call kept its transaction meanwhile.
  WriteTool("#!/bin/sh\nexec sqlite3 " + LabFile() + " 'BEGIN IMMEDIATE; COMMIT'\n");
  if (std::system("command -v sqlite3 >/dev/null") != 0) GTEST_SKIP() << "no sqlite3 program";
  EXPECT_EQ(Run(""), 0);
}

}  // namespace
}  // namespace lab_test
