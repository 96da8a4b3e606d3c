#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "autocli/plugin/Elf.h"
#include "autocli/plugin/Loader.h"
#include "tests/autocli/Support.h"

namespace autocli::test {

using Corvex::AutoCli::AutoCli_ShellCmd;
using testing::ElementsAre;
using testing::IsEmpty;

class PluginTest : public testing::Test {
 protected:
  /// Writes a file into the folder and returns its path.
  std::string Put(const std::string& name, const std::string& bytes, mode_t mode = 0644) const {
    ::test::WriteFile(folder_ / name, bytes);
    chmod((folder_ / name).c_str(), mode);
    return folder_ / name;
  }

  Words Load() {
    Words messages;
    for (const Plugin& plugin : LoadPlugins(path_, root_)) {
      const auto& [reason, remedy] = plugin.trouble;
      if (!reason.empty()) messages.push_back(plugin.name + ": " + reason);
    }
    return messages;
  }

  const ::test::Folder folder_;
  const std::string path_ = folder_.path;
  std::string good_ = ::test::ReadFile(TEST_PLUGIN_FOLDER "/good.so");
  std::shared_ptr<Namespace> root_ = Namespace::New();
};

TEST_F(PluginTest, BadOnesAreNamedAndTheRestWorks) {
  Put("a.so", ::test::ReadFile(TEST_PLUGIN_FOLDER "/throwing.so"));
  Put("b.so", ::test::ReadFile(TEST_PLUGIN_FOLDER "/silent.so"));
  Put("c.so", good_);
  Put("g.so.txt", "no plug-in");
  EXPECT_THAT(Load(), ElementsAre("a.so: no disk today",
                                  "b.so: no entry point AutoCli_RegisterNamespaces"));
  EXPECT_TRUE(root_->HasNamespaceNode("half")) << "what was registered before the failure stays";
  EXPECT_TRUE(root_->HasNamespaceNode("good"));
}

TEST_F(PluginTest, FilesThatCouldKillTheProcessAreNotLoaded) {
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{100}, good_.size() / 4, good_.size() / 2, good_.size() - 1}) {
    Put("a.so", good_.substr(0, size));
    EXPECT_THAT(Load(), ElementsAre("a.so: truncated")) << size;
  }
  EXPECT_THAT(root_->GetChildren(), IsEmpty());
}

TEST_F(PluginTest, AVersionStandsInTheNoteOfItsType) {
  EXPECT_EQ(ElfVersion(Put("a.so", good_)), "1.5");
  good_[good_.find(std::string_view("FDO", 4)) - 1] ^= 1;  // the type is in front of the owner
  EXPECT_EQ(ElfVersion(Put("a.so", good_)), "");
}

TEST_F(PluginTest, FilesThatOthersCouldHaveWrittenAreNotLoaded) {
  Put("a.so", good_, 0646);
  Put("b.so", good_, 0664);
  std::filesystem::create_symlink(Put("target", good_), path_ + "/c.so");
  ASSERT_EQ(mkfifo((path_ + "/d.so").c_str(), 0644), 0);
  EXPECT_THAT(Load(),
              ElementsAre("a.so: writable by group or others", "b.so: writable by group or others",
                          "c.so: no regular file", "d.so: no regular file"));
  if (geteuid() == 0) {  // only root can give files away
    ASSERT_EQ(chown(Put("a.so", good_).c_str(), 12345, 0), 0);
    EXPECT_EQ(Load().front(), "a.so: belongs to neither root nor the user");
  }
  EXPECT_EQ(FaultsOf(LoadPlugins(path_, root_))[1].message,
            "plug-in \"" + path_ +
                "/b.so\" could not be loaded: writable by group or others; try: chmod go-w " +
                path_ + "/b.so");
  chmod(path_.c_str(), 0777);
  EXPECT_THAT(Load(), ElementsAre(": writable by group or others"));
  EXPECT_THAT(LoadPlugins(path_ + "/none", root_), IsEmpty());
  EXPECT_THAT(root_->GetChildren(), IsEmpty());
}

TEST_F(PluginTest, OneThatEndsTheProgramIsNamed) {
  std::filesystem::create_directory(path_ + "/bin");
  std::filesystem::create_directories(path_ + "/lib/autocli/plugins");
  std::filesystem::copy(TEST_PROGRAM, path_ + "/bin");
  std::filesystem::copy(TEST_LIBRARY, path_ + "/lib");
  const std::string plugins = "lib/autocli/plugins/";
  Put(plugins + "a.so", good_);
  Put(plugins + "z.so", good_);
  const std::string bytes = ::test::ReadFile(TEST_PLUGIN_FOLDER "/ending.so");
  const std::string loaded = "ended the program while it was loaded: ";
  const std::string line = path_ + "/bin/autocli good --help >/dev/null 2>" + (folder_ / "err");
  const auto run = [&] { return WEXITSTATUS(std::system(line.c_str())); };
  for (const auto& [name, reason] : {std::pair("exit", loaded + "exit()"),
                                     {"quick", loaded + "quick_exit()"},
                                     {"fpe", loaded + "SIGFPE"},
                                     {"stack", loaded + "SIGSEGV"},
                                     {"throw", loaded + "no /dev/disk today"},
                                     {"register", loaded + "SIGABRT"},
                                     {"destructor", "broke when the program ended: SIGABRT"}}) {
    const std::string ending = Put(plugins + name + ".so", bytes);
    EXPECT_EQ(run(), 3) << name;
    EXPECT_EQ(::test::ReadFile(folder_ / "err"),
              "error: plug-in \"" + ending + "\" " + reason + "\n");
    std::filesystem::remove(ending);
  }
  EXPECT_EQ(run(), 0) << "without them all is well";
}

class ShellCmdTest : public PluginTest {
 protected:
  std::string output_ = "old";
};

TEST_F(ShellCmdTest, ProgramsGetTheirWordsAndTellTheirEnd) {
  const std::string program =
      Put("program", "#!/bin/sh\nprintf '<%s>' \"$@\"\necho lost >&2\nexit 7\n", 0755);
  testing::internal::CaptureStderr();
  EXPECT_EQ(AutoCli_ShellCmd("  " + program + "  -t  a,b -d caf\xc3\xa9 ", output_, ""), 7);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(output_, "<-t><a,b><-d><caf\xc3\xa9>");
  EXPECT_EQ(AutoCli_ShellCmd(Put("program", "#!/bin/sh\nkill -9 $$\n", 0755), output_, ""),
            128 + SIGKILL);
  EXPECT_EQ(AutoCli_ShellCmd("/usr/bin/env", output_, ""), 0);
  EXPECT_EQ(output_, "PATH=/usr/sbin:/usr/bin:/sbin:/bin\nLC_ALL=C\n");
}

TEST_F(ShellCmdTest, NothingRunsWhenTheLineMeansSomethingToAShell) {
  const std::string program = Put("program", "#!/bin/sh\ntouch \"$0.ran\"\n", 0755);
  for (const char c : std::string("|&;<>()$`\"'\\*?[]#~={}!%^\n\t\r\x01\x7f") + '\0') {
    EXPECT_EQ(AutoCli_ShellCmd(program + " a" + c + "b", output_, ""), -1) << static_cast<int>(c);
    EXPECT_EQ(AutoCli_ShellCmd(program + c, output_, ""), -1) << static_cast<int>(c);
    EXPECT_EQ(output_, "");
  }
  for (const std::string line : {"", "  ", "program", "./program", "/absent", "/tmp"}) {
    EXPECT_EQ(AutoCli_ShellCmd(line, output_, ""), -1) << line;
    EXPECT_EQ(output_, "");
  }
  EXPECT_FALSE(std::filesystem::exists(program + ".ran"));
  EXPECT_EQ(AutoCli_ShellCmd(program, output_, ""), 0);
  EXPECT_TRUE(std::filesystem::exists(program + ".ran"));
}

TEST_F(ShellCmdTest, LinesAreRecordedAndNothingRunsWhenTold) {
  const std::string record = path_ + "/record";
  const std::string program = Put("program", "#!/bin/sh\ntouch \"$0.ran\"\n", 0755);
  setenv("AUTOCLI_SHELL_RECORD", record.c_str(), 1);
  EXPECT_EQ(AutoCli_ShellCmd("/bin/true -x", output_, ""), 0);
  setenv("AUTOCLI_SHELL_START", "no", 1);
  EXPECT_EQ(AutoCli_ShellCmd(program + " a\nb", output_, ""), -1);
  EXPECT_EQ(AutoCli_ShellCmd(program, output_, ""), -1);
  unsetenv("AUTOCLI_SHELL_START");
  EXPECT_FALSE(std::filesystem::exists(program + ".ran"));
  EXPECT_EQ(::test::ReadFile(record), "/bin/true -x\n" + program + " a\\nb\n" + program + "\n");
  setenv("AUTOCLI_SHELL_RECORD", "/dev/full", 1);
  EXPECT_EQ(AutoCli_ShellCmd(program, output_, ""), -1);
  unsetenv("AUTOCLI_SHELL_RECORD");
  EXPECT_FALSE(std::filesystem::exists(program + ".ran"));
}

TEST_F(ShellCmdTest, LargeTextsGoBothWaysAtOnce) {
  const std::string input(3000000, 'x');
  EXPECT_EQ(AutoCli_ShellCmd("/bin/cat", output_, input), 0);
  EXPECT_TRUE(output_ == input) << output_.size();
  // A program that does not read its input ends neither itself nor us.
  EXPECT_EQ(AutoCli_ShellCmd("/bin/true", output_, input), 0);
  EXPECT_EQ(output_, "");
}

}  // namespace autocli::test
