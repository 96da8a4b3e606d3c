#include <sys/inotify.h>
#include <unistd.h>

#include <array>

#include "autocli/base/File.h"
#include "autocli/program/Tools.h"
#include "autocli/tools/CompanionCheck.h"
#include "tests/autocli/Support.h"

namespace autocli::test {

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

TEST_F(CompanionTest, HelpSaysWhatItSays) {
  companion.Write(R"({"disk grow": {
      "options": {"name": {"is": "file"}, "to": {"is": "folder"}},
      "rest": "words",
      "examples": [{"line": "disk grow -n a\u001b", "text": "Let it grow.\nAnd grow."},
                   {"line": "disk grow -n b", "text": ""}]}})");
  const std::string usage =
      "\nusage: autocli disk grow --name FILE [--to FOLDER] [--size INT] [WORDS...]\n";
  const std::string help = tree.Run("disk grow --help").out;
  for (const char* part :
       {usage.c_str(), "\n  -n, --name FILE  (required) Which.\n",
        "\n\nexamples:\n  autocli disk grow -n a\\x1b\n      Let it grow.\n      And grow.\n"
        "  autocli disk grow -n b\n\nexit status: "}) {
    EXPECT_THAT(help, HasSubstr(part));
  }
  EXPECT_THAT(tree.Run("disk grow").err, HasSubstr(usage));
  EXPECT_EQ(tree.Run("disk list --help").out.find("examples"), std::string::npos);
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
  const auto expect = [&](const std::string& json, const std::string& problem) {
    companion.Write(json);
    EXPECT_THAT(Problems(), testing::Contains(companion.file + ": " + problem)) << json;
  };
  expect(R"({"disk": {}})", R"("disk": there is no command "disk")");
  expect(R"({"disk grow -n x": {}})", R"("disk grow -n x": there is no command "disk grow -n x")");
  expect(R"({"disk grow": []})", R"("disk grow": no object)");
  expect(R"({"disk grow": {}, "disk grow": {}})", R"("disk grow" is there twice)");
  const std::pair<std::string, const char*> cases[] = {
      {R"("rset": "")", R"(: unknown key "rset")"},
      {R"("rest": "name")", R"(, rest: the command has no list option "--name")"},
      {R"("options": {"nmae": {}})", ", --nmae: the command has no such option"},
      {R"("options": {"name": {"si": ""}})", R"(, --name: unknown key "si")"},
      {R"("options": {"name": {"is": "fiel"}})", ", --name, is: none of file, folder, line"},
      {R"("options": {"size": {"is": "file"}})", ", --size, is: the option takes no text"},
      {R"("options": {"name": {"is": "line"}})",
       ", --name, is: only the rest of the line can be a line"},
      {R"("options": {"name": {"values": {}}})", ", --name, values: no list"},
      {R"("examples": [{"line": "disk grow", "text": "Do."}])",
       R"(, examples: "disk grow": required option "--name" is missing)"},
      {R"("examples": [{"line": "disk grow -n 'x"}])",
       R"(, examples: "disk grow -n 'x": a single quote is not closed)"},
      {R"("examples": [{"line": "disk list", "txet": ""}])", R"(, examples: unknown key "txet")"},
      {R"("examples": [{"line": "disk list"}])", R"(, examples: "disk list" is another command's)"},
  };
  for (const auto& [notes, problem] : cases) {
    expect(R"({"disk grow": {)" + notes + "}}", R"("disk grow")" + std::string(problem));
  }
  const std::string named = R"("command": "disk list", "field": "Name", )";
  const std::pair<std::string, const char*> sources[] = {
      {R"("field": "Name")", "a source needs a command"},
      {R"("command": "disk list")", R"("disk list" has no field "")"},
      {R"("command": "disk lost", "field": "Name")", R"(there is no command "disk lost")"},
      {R"("command": "disk grow", "field": "Name")",
       R"("disk grow": required option "--name" is missing)"},
      {named + R"("about": "Tag")", R"("disk list" has no field "Tag")"},
      {named + R"("where": {"Siez": 5})", R"("disk list" has no field "Siez")"},
      {named + R"("unless": {"size": 5})", R"(no flag or text option "--size" to go by)"},
      {named + R"("were": {})", R"(unknown key "were")"},
  };
  for (const auto& [source, problem] : sources) {
    expect(R"({"disk grow": {"options": {"name": {"values": [{)" + source + "}]}}}}",
           R"("disk grow", --name, values: )" + std::string(problem));
  }
  expect(R"({"disk grow": {"options": {"name": {"values": [{)" + named +
             R"("except": {"Size": 5.5}}]}}}})",
         R"("disk grow", --name, values, except, Size: no text, integer, true or false)");
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

}  // namespace autocli::test
