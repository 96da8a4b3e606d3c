#include <sys/stat.h>

#include <csignal>

#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using Corvex::AutoCli::AutoCli_ShellCmd;

class ShellCmdTest : public testing::Test {
 protected:
  /// Makes a program of these shell lines and returns its path.
  std::string Program(const std::string& lines) const {
    WriteFile(folder_ / "program", "#!/bin/sh\n" + lines);
    chmod((folder_ / "program").c_str(), 0755);
    return folder_ / "program";
  }

  TemporaryFolder folder_;
};

TEST_F(ShellCmdTest, WordsArriveAsTheyAre) {
  const std::string program = Program("printf '<%s>' \"$@\"\n");
  std::string output = "old";
  EXPECT_EQ(AutoCli_ShellCmd("  " + program + "  -t  a,b -d caf\xc3\xa9 ", output, ""), 0);
  EXPECT_EQ(output, "<-t><a,b><-d><caf\xc3\xa9>");
}

TEST_F(ShellCmdTest, TheEnvironmentIsFixedAndErrorsAreDropped) {
  setenv("AUTOCLI_TEST_LEAK", "1", 1);
  std::string output;
  EXPECT_EQ(AutoCli_ShellCmd("/usr/bin/env", output, ""), 0);
  EXPECT_EQ(output, "PATH=/usr/sbin:/usr/bin:/sbin:/bin\nLC_ALL=C\n");
  unsetenv("AUTOCLI_TEST_LEAK");
  testing::internal::CaptureStderr();
  EXPECT_EQ(AutoCli_ShellCmd(Program("echo lost >&2\n"), output, ""), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(output, "");
}

TEST_F(ShellCmdTest, TheStatusIsHowTheProgramEnded) {
  std::string output;
  EXPECT_EQ(AutoCli_ShellCmd(Program("echo said\nexit 7\n"), output, ""), 7);
  EXPECT_EQ(output, "said\n");
  EXPECT_EQ(AutoCli_ShellCmd(Program("kill -9 $$\n"), output, ""), 128 + SIGKILL);
}

TEST_F(ShellCmdTest, NothingRunsWhenTheLineMeansSomethingToAShell) {
  const std::string program = Program("touch \"$0.ran\"\n");
  std::string output;
  for (const char c : std::string("|&;<>()$`\"'\\*?[]#~={}!%^\n\t\r\x01\x7f") + '\0') {
    EXPECT_EQ(AutoCli_ShellCmd(program + " a" + c + "b", output, ""), -1) << static_cast<int>(c);
    EXPECT_EQ(AutoCli_ShellCmd(program + c, output, ""), -1) << static_cast<int>(c);
  }
  for (const std::string& line : {std::string(), std::string("  "), std::string("program"),
                                  std::string("./program"), folder_ / "absent", folder_.Path()}) {
    output = "old";
    EXPECT_EQ(AutoCli_ShellCmd(line, output, ""), -1) << line;
    EXPECT_EQ(output, "");
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "program.ran"));
  EXPECT_EQ(AutoCli_ShellCmd(program, output, ""), 0);
  EXPECT_TRUE(std::filesystem::exists(folder_ / "program.ran"));
}

TEST_F(ShellCmdTest, LargeTextsGoBothWaysAtOnce) {
  const std::string input(3000000, 'x');
  std::string output;
  EXPECT_EQ(AutoCli_ShellCmd("/bin/cat", output, input), 0);
  EXPECT_EQ(output.size(), input.size());
  EXPECT_EQ(output, input);
  // A program that does not read its input ends neither itself nor us.
  EXPECT_EQ(AutoCli_ShellCmd("/bin/true", output, input), 0);
  EXPECT_EQ(output, "");
}

}  // namespace
}  // namespace autocli::test
