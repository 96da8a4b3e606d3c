#include <sys/inotify.h>
#include <unistd.h>

#include <array>

#include "autocli/base/File.h"
#include "autocli/program/Tools.h"
#include "autocli/tools/CompanionCheck.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The disk tree with more options.
class CompanionTest : public testing::Test {
 protected:
  CompanionTest() {
    tree.loaded = companion.plugins;
    tree.grow->input = [] {
      return Declare::Inputs({
          {.name = "name", .shortName = "n", .required = true, .description = "Which."},
          {.name = "to"},
          {.name = "size", .type = ParameterType::Int},
          {.name = "words", .type = ParameterType::StringList},
      });
    };
  }

  Words Problems() const {
    return CompanionProblems({tree.root, Tools(), "", Companions(companion.plugins)});
  }

  TestCompanion companion;
  DiskTree tree;
};

TEST_F(CompanionTest, HelpAndPagesSayWhatItSays) {
  companion.Write(R"({"disk grow": {
      "options": {"name": {"is": "file"}, "to": {"is": "folder"}},
      "rest": "words",
      "examples": [{"line": "disk grow -n a\u001b", "text": "Let it grow.\nAnd grow."},
                   {"line": "disk grow -n b", "text": ""}]}})");
  const std::string help = tree.Run("disk grow --help").out;
  EXPECT_THAT(help, HasSubstr("\nusage: autocli disk grow --name FILE [--to FOLDER] [--size INT] "
                              "[WORDS...]\n"));
  EXPECT_THAT(help, HasSubstr("\n  -n, --name FILE  (required) Which.\n"));
  EXPECT_THAT(help, HasSubstr("\n\nexamples:\n  autocli disk grow -n a\\x1b\n      Let it grow.\n"
                              "      And grow.\n  autocli disk grow -n b\n\nexit status: "));
  EXPECT_THAT(tree.Run("disk grow").err, HasSubstr("\nusage: autocli disk grow --name FILE "));
  EXPECT_EQ(tree.Run("disk list --help").out.find("examples"), std::string::npos);

  const ::test::Folder pages;
  EXPECT_EQ(tree.Run("--reference man " + pages.path), (Ran{0, "", ""}));
  EXPECT_EQ(tree.Run("--reference markdown " + pages.path), (Ran{0, "", ""}));
  EXPECT_THAT(::test::ReadFile(pages / "commands.md"),
              HasSubstr("\n| For example | |\n|---|---|\n| `autocli disk grow -n a\\x1b` | Let it "
                        "grow.<br>And grow. |\n| `autocli disk grow -n b` |  |\n"));
  const std::string show =
      "cd " + pages.path + " && mandoc -Tlint *.1 && mandoc autocli-disk.1 | col -bx >out";
  EXPECT_EQ(std::system(show.c_str()), 0);
  EXPECT_THAT(::test::ReadFile(pages / "out"),
              HasSubstr("\nEXAMPLES\n     autocli disk grow -n a\\x1b\n             Let it grow.\n"
                        "             And grow.\n\n     autocli disk grow -n b\n"));
}

TEST_F(CompanionTest, NamesAreHeldAgainstTheTree) {
  companion.Write(R"({
    "disk grow": {
      "options": {
        "name": {"values": [
          {"command": "disk list", "field": "Name", "about": "Tags", "where": {"Size": 5},
           "except": {"Fast": true}, "when": {"to": "a"}, "unless": {"name": "b"}},
          {"command": "lab list", "field": "of a plug-in that is not here"}]},
        "to": {"is": "file"},
        "words": {"is": "line"}},
      "rest": "words",
      "examples": [{"line": "disk grow --name 'a b' disk list", "text": "Do."}]},
    "lab grow": {"rest": "of a plug-in that is not here"}})");
  EXPECT_THAT(Problems(), IsEmpty());
  const std::string values = R"({"disk grow": {"options": {"name": {"values": )";
  const std::string source = values + R"([{"command": "disk list", "field": "Name", )";
  const std::pair<std::string, const char*> cases[] = {
      {R"({"disk grew": {}})", R"("disk grew": there is no command "disk grew")"},
      {R"({"disk": {}})", R"("disk": there is no command "disk")"},
      {R"({"disk grow --name x": {}})",
       R"("disk grow --name x": there is no command "disk grow --name x")"},
      {R"({"disk grow": {"rset": ""}})", R"("disk grow": unknown key "rset")"},
      {R"({"disk grow": []})", R"("disk grow": no object)"},
      {R"({"disk grow": {}, "disk grow": {}})", R"("disk grow" is there twice)"},
      {R"({"disk grow": {"rest": "name"}})",
       R"("disk grow", rest: the command has no list option "--name")"},
      {R"({"disk grow": {"options": {"nmae": {}}}})",
       R"("disk grow", --nmae: the command has no such option)"},
      {R"({"disk grow": {"options": {"name": {"si": ""}}}})",
       R"("disk grow", --name: unknown key "si")"},
      {R"({"disk grow": {"options": {"name": {"is": "fiel"}}}})",
       R"("disk grow", --name, is: none of file, folder, line)"},
      {R"({"disk grow": {"options": {"size": {"is": "file"}}}})",
       R"("disk grow", --size, is: the option takes no text)"},
      {R"({"disk grow": {"options": {"name": {"is": "line"}}}})",
       R"("disk grow", --name, is: only the rest of the line can be a line)"},
      {values + "{}}}}}", R"("disk grow", --name, values: no list)"},
      {values + R"([{"field": "Name"}]}}}})",
       R"("disk grow", --name, values: a source needs a command)"},
      {values + R"([{"command": "disk list"}]}}}})",
       R"("disk grow", --name, values: "disk list" has no field "")"},
      {values + R"([{"command": "disk lost", "field": "Name"}]}}}})",
       R"("disk grow", --name, values: there is no command "disk lost")"},
      {values + R"([{"command": "disk grow", "field": "Name"}]}}}})",
       R"("disk grow", --name, values: "disk grow": required option "--name" is missing)"},
      {source + R"("about": "Tag"}]}}}})",
       R"("disk grow", --name, values: "disk list" has no field "Tag")"},
      {source + R"("where": {"Siez": 5}}]}}}})",
       R"("disk grow", --name, values: "disk list" has no field "Siez")"},
      {source + R"("except": {"Size": 5.5}}]}}}})",
       R"("disk grow", --name, values, except, Size: no text, integer, true or false)"},
      {source + R"("unless": {"size": 5}}]}}}})",
       R"("disk grow", --name, values: no flag or text option "--size" to go by)"},
      {source + R"("were": {}}]}}}})", R"("disk grow", --name, values: unknown key "were")"},
      {R"({"disk grow": {"examples": [{"line": "disk grow", "text": "Do."}]}})",
       R"("disk grow", examples: "disk grow": required option "--name" is missing)"},
      {R"({"disk grow": {"examples": [{"line": "disk grow -n 'x"}]}})",
       R"("disk grow", examples: "disk grow -n 'x": a single quote is not closed)"},
      {R"({"disk grow": {"examples": [{"line": "disk list", "txet": ""}]}})",
       R"("disk grow", examples: unknown key "txet")"},
      {R"({"disk grow": {"examples": [{"line": "disk list"}]}})",
       R"("disk grow", examples: "disk list" is another command's)"},
  };
  for (const auto& [json, problem] : cases) {
    companion.Write(json);
    EXPECT_THAT(Problems(), testing::Contains(companion.file + ": " + problem)) << json;
  }
  companion.Write(R"({"disk grew": {}})");
  EXPECT_EQ(
      tree.Run("--plugins --fields Loaded --formatter csv"),
      (Ran{3, "Loaded\ntrue\n",
           "error: " + companion.file + ": \"disk grew\": there is no command \"disk grew\"\n"}));
}

TEST_F(CompanionTest, OneThatCannotBeReadIsToldByTheListAlone) {
  const std::string good = R"({"disk grow": {"rest": "words"}})";
  const auto isUsed = [&] { return tree.Run("disk grow -n a word").status == 0; };
  companion.Write(good);
  EXPECT_TRUE(isUsed());
  chmod(companion.file.c_str(), 0666);
  EXPECT_THAT(Problems(), ElementsAre(companion.file + ": writable by group or others"));
  EXPECT_FALSE(isUsed());
  companion.Write(good.substr(0, 20));
  EXPECT_THAT(Problems(), ElementsAre(HasSubstr("parse error at line 1, column 21")));
  EXPECT_FALSE(isUsed());
  EXPECT_EQ(tree.Run("disk grow -n a"), (Ran{0, "true\n", ""}));
  EXPECT_EQ(tree.Run("disk grow --help").err, "");
  companion.Write(good);
  std::filesystem::rename(companion.file, companion.folder / "target");
  std::filesystem::create_symlink("target", companion.file);
  EXPECT_THAT(Problems(), ElementsAre(companion.file + ": no regular file"));
  EXPECT_FALSE(isUsed());
  std::filesystem::remove(companion.file);
  EXPECT_THAT(Problems(), IsEmpty()) << "there need not be one";
}

TEST_F(CompanionTest, ALineThatNeedsItNotDoesNotOpenIt) {
  companion.Write(R"({"disk grow": {"rest": "words"}})");
  const File watch(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  ASSERT_GE(inotify_add_watch(watch.Number(), companion.file.c_str(), IN_OPEN), 0);
  const auto isOpened = [&](const char* line) {
    tree.Run(line);
    std::array<char, 4096> events;
    return read(watch.Number(), events.data(), events.size()) > 0;
  };
  for (const char* line : {"disk list", "disk grow -n a --words b", "disk grow -n a --", "disk",
                           "dusk", "--help", "disk --help", "--describe", "--complete disk g"}) {
    EXPECT_FALSE(isOpened(line)) << line;
  }
  for (const char* line : {"disk grow -n a word", "disk grow", "disk grow --help",
                           "--complete disk grow --", "--plugins"}) {
    EXPECT_TRUE(isOpened(line)) << line;
  }
}

}  // namespace
}  // namespace autocli::test
