#include <unistd.h>

#include <cstdlib>

#include "autocli/tools/SplitLine.h"
#include "tests/autocli/Support.h"
#include "tests/support/Files.h"

namespace autocli::test {

using Corvex::Declare::Refuse;
using testing::StartsWith;

TEST(SplitLineTest, QuotesAsAShellDoesAndExpandsNothing) {
  const std::tuple<std::string, Words, const char*> cases[] = {
      {"", {}, ""},
      {" \t# words of a comment", {}, ""},
      {"a  b\tc#d #e", {"a", "b", "c#d"}, ""},
      {R"('a b'"c d"\ e '' $HOME *)", {"a bc d e", "", "$HOME", "*"}, ""},
      {R"('\' "\\\"\n")", {"\\", "\\\"\\n"}, ""},
      {"a 'b", {}, "a single quote is not closed"},
      {"\"a\\\"", {}, "a double quote is not closed"},
      {"a\\", {}, "a backslash ends the line"},
      {std::string("a\0b", 3), {}, "a line holds no zero bytes"},
  };
  for (const auto& [line, words, expected] : cases) {
    SCOPED_TRACE(line);
    std::string problem;
    const Words split = SplitLine(line, problem);
    EXPECT_EQ(problem, expected);
    EXPECT_EQ(problem.empty() ? split : Words(), words);
  }
}

class BatchTest : public testing::Test {
 protected:
  Ran Run(const std::string& lines, const std::string& options = "", const Words& faults = {}) {
    ::test::WriteFile(folder_ / "lines", lines);
    return tree.Run("batch " + (folder_ / "lines") + options, faults);
  }

  DiskTree tree;

 private:
  const ::test::Folder folder_;
};

TEST_F(BatchTest, TellsHostLibrariesWhichLineIsCarriedOut) {
  Words told;
  tree.grow->execute = [&](const InputPtr&, const OutputPtr& output) {
    told.emplace_back(std::getenv("AUTOCLI_LINE"));
    Declare::Succeed(output);
  };
  Run("disk grow --name ''\n\ndisk grow  --name \"it's b\" # comment\n");
  tree.Run("disk grow --name c");
  const std::string process = std::to_string(getpid());
  EXPECT_EQ(told, (Words{process + " 1 disk grow --name ''",
                         process + R"( 3 disk grow --name 'it'\''s b')",
                         process + " 0 disk grow --name c"}));
}

TEST_F(BatchTest, AnswersEachLineAndStopsAtTheFirstFailure) {
  tree.grow->execute = [](const InputPtr& input, const OutputPtr& output) {
    if (input->GetParameter("name") == "full") return Refuse(output, "no room");
    Declare::Succeed(output);
  };
  const std::string grown = R"("command":"disk grow","ok":true,"result":true,"errors":[]})";
  const std::string full = R"({"line":3,"command":"disk grow","ok":false,"result":null,"errors":)"
                           R"([{"kind":"command","message":"no room"}]})";
  const std::string lines = "disk grow -n 'a b'\r\n\ndisk grow -n full\r\ndisk grow -n c";
  const std::string upToFailure = "{\"line\":1," + grown + "\n" + full + "\n";
  EXPECT_EQ(Run(lines), (Ran{1, upToFailure, ""}));
  EXPECT_EQ(Run(lines, " --keep-going"), (Ran{1, upToFailure + "{\"line\":4," + grown + "\n", ""}));
  EXPECT_EQ(Run("help disk").status, 0);
  EXPECT_EQ(Run("disk grow -n c", "", {"bad"}),
            (Ran{0, "{\"line\":1," + grown + "\n", kNotLoaded}));
}

TEST_F(BatchTest, RefusesWhatIsNoLineOfABatch) {
  const std::pair<std::string, std::string> cases[] = {
      {"disk 'grow", "line 1: a single quote is not closed"},
      {"batch -", R"(line 1: \"batch\" cannot stand in a batch)"},
      {"disk list --formatter csv", R"(option \"--formatter\" cannot stand in a batch)"},
      {"disk --describe", R"(option \"--describe\" cannot stand in a batch)"},
  };
  for (const auto& [line, message] : cases) {
    const Ran ran = Run(line + "\n");
    EXPECT_EQ(ran.status, 2);
    EXPECT_THAT(ran.out, StartsWith("{\"line\":1,"));
    EXPECT_THAT(ran.out, testing::HasSubstr(message));
  }
  const std::string usage = "usage: autocli batch FILE|- [--keep-going]\ntry: autocli --help\n";
  EXPECT_EQ(tree.Run("batch"),
            (Ran{2, "", "error: the file of command lines is missing\n" + usage}));
  EXPECT_EQ(tree.Run("batch a b"), (Ran{2, "", "error: unexpected argument \"b\"\n" + usage}));
  EXPECT_EQ(tree.Run("batch /no/such"),
            (Ran{2, "", "error: cannot read \"/no/such\": No such file or directory\n"}));
  EXPECT_EQ(tree.Run("batch /").err, "error: cannot read \"/\": Is a directory\n");
}

}  // namespace autocli::test
