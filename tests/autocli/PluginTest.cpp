#include <sys/stat.h>
#include <unistd.h>

#include "autocli/plugin/Loader.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PluginTest : public testing::Test {
 protected:
  /// Puts a copy of the built plug-in into the folder, writable by its owner only.
  void Install(const std::string& plugin, const std::string& name) const {
    Put(name, ReadFile(std::string(TEST_PLUGIN_FOLDER) + "/" + plugin));
  }

  void Put(const std::string& name, const std::string& bytes) const {
    WriteFile(folder_ / name, bytes);
    chmod((folder_ / name).c_str(), 0644);
  }

  Words Load() { return LoadPlugins(folder_.Path(), root_); }

  TemporaryFolder folder_;
  std::shared_ptr<Namespace> root_ = Namespace::New();
};

TEST_F(PluginTest, BadOnesAreNamedAndTheRestWorks) {
  Install("throwing.so", "a.so");
  Install("silent.so", "b.so");
  Install("good.so", "c.so");
  Put("d.so.txt", "no plug-in");
  EXPECT_THAT(Load(), ElementsAre("plug-in \"a.so\": no disk today",
                                  "plug-in \"b.so\": no entry point AutoCli_RegisterNamespaces"));
  EXPECT_TRUE(root_->HasNamespaceNode("half")) << "what was registered before the failure stays";
  EXPECT_TRUE(root_->HasNamespaceNode("good"));
}

TEST_F(PluginTest, FilesThatCouldKillTheProcessAreNotLoaded) {
  const std::string whole = ReadFile(std::string(TEST_PLUGIN_FOLDER) + "/good.so");
  ASSERT_GT(whole.size(), 4096U);
  std::string elsewhere = whole;
  elsewhere[18] = static_cast<char>(elsewhere[18] ^ 0x55);  // the machine
  std::string program = whole;
  program[16] = 2;  // the type
  Put("a-empty.so", "");
  Put("b-text.so", std::string(1000, 'x'));
  Put("c-machine.so", elsewhere);
  Put("d-program.so", program);
  EXPECT_THAT(Load(), ElementsAre("plug-in \"a-empty.so\": truncated",
                                  "plug-in \"b-text.so\": no shared object",
                                  "plug-in \"c-machine.so\": made for another machine",
                                  "plug-in \"d-program.so\": no shared object"));
  for (const std::size_t size :
       {std::size_t{64}, std::size_t{100}, whole.size() / 4, whole.size() / 2, whole.size() - 1}) {
    const TemporaryFolder folder;
    WriteFile(folder / "cut.so", whole.substr(0, size));
    chmod((folder / "cut.so").c_str(), 0644);
    EXPECT_THAT(LoadPlugins(folder.Path(), root_), ElementsAre("plug-in \"cut.so\": truncated"))
        << size;
  }
  EXPECT_THAT(root_->GetChildren(), IsEmpty());
}

TEST_F(PluginTest, FilesThatOthersCouldHaveWrittenAreNotLoaded) {
  Install("good.so", "a.so");
  chmod((folder_ / "a.so").c_str(), 0646);
  Install("good.so", "b.so");
  chmod((folder_ / "b.so").c_str(), 0664);
  Install("good.so", "target");
  std::filesystem::create_symlink(folder_ / "target", folder_ / "c.so");
  std::filesystem::create_directory(folder_ / "d.so");
  ASSERT_EQ(mkfifo((folder_ / "e.so").c_str(), 0644), 0);
  EXPECT_THAT(Load(),
              ElementsAre("plug-in \"a.so\": writable by group or others",
                          "plug-in \"b.so\": writable by group or others",
                          "plug-in \"c.so\": no regular file", "plug-in \"d.so\": no regular file",
                          "plug-in \"e.so\": no regular file"));
  EXPECT_THAT(root_->GetChildren(), IsEmpty());
}

TEST_F(PluginTest, FilesOfStrangersAreNotLoaded) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files away";
  Install("good.so", "a.so");
  ASSERT_EQ(chown((folder_ / "a.so").c_str(), 12345, 0), 0);
  EXPECT_THAT(Load(), ElementsAre("plug-in \"a.so\": belongs to neither root nor the user"));
}

TEST_F(PluginTest, FoldersAreHeldToTheSame) {
  Install("good.so", "good.so");
  chmod(folder_.Path().c_str(), 0777);
  EXPECT_THAT(Load(), ElementsAre("plug-in folder \"" + folder_.Path() +
                                  "\": writable by group or others"));
  EXPECT_THAT(LoadPlugins(folder_ / "none", root_), IsEmpty());
  EXPECT_THAT(LoadPlugins(folder_ / "good.so", root_),
              ElementsAre("plug-in folder \"" + (folder_ / "good.so") + "\": Not a directory"));
  EXPECT_THAT(root_->GetChildren(), IsEmpty());
}

}  // namespace
}  // namespace autocli::test
