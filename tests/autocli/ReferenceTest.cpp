#include <cstdlib>

#include "tests/autocli/Support.h"

namespace autocli::test {

TEST(ReferenceTest, PagesShowTextsAsTheyStand) {
  const TestCompanion companion(R"({"disk list": {"options": {"No": {"is": "file"}}, "examples": [
      {"line": "disk list -q a\u001b", "text": "Show it.\nAnd show."},
      {"line": "disk list -q b", "text": ""}]}})");
  DiskTree tree;
  tree.loaded = companion.plugins;
  tree.list->SetDescription(".Sh Ruin\n'so \\fB -x | <b> `a`\n\n  - one\n  1. two\n# end");
  tree.list->input = [] {
    return Declare::Inputs(
        {{.name = "No", .shortName = "q", .description = "a|b\nc i.e. d\x1b. *E*"}});
  };
  tree.root->RegisterNamespaceNode(Namespace::New(), "Ar");
  const ::test::Folder pages;
  const std::string& folder = pages.path;
  EXPECT_EQ(tree.Run("--reference man " + folder), (Ran{0, "", ""}));
  tree.grow->input = []() -> std::shared_ptr<InputSpec> { return nullptr; };
  EXPECT_EQ(tree.Run("--reference markdown " + folder),
            (Ran{4, "", "error: command \"disk grow\": declares no input\n"}));
  const std::string show =
      "cd " + folder + " && mandoc -Tlint *.1 &&" +
      " mandoc autocli-disk.1 autocli-Ar.1 | col -bx >out && cat commands.md >>out";
  EXPECT_EQ(std::system(show.c_str()), 0);
  const std::string shown = ::test::ReadFile(pages / "out");
  for (
      const char* part :
      {"\n     .Sh Ruin\n     'so \\fB -x | <b> `a`\n           - one\n           1. two\n",
       "\nSYNOPSIS\n     autocli Ar COMMAND... [options]\n",
       "\nEXAMPLES\n     autocli disk list -q a\\x1b\n             Show it.\n             And show.\n\n"
       "     autocli disk list -q b\n",
       "\n| For example | |\n|---|---|\n| `autocli disk list -q a\\x1b` | Show it.<br>And show. |\n"
       "| `autocli disk list -q b` |  |\n",
       "\n     -q, --No FILE\n             a|b\n             c i.e. d\\x1b. *E*\n",
       "\n\\.Sh Ruin\\\n'so \\\\fB -x \\| \\<b\\> \\`a\\`\\\n\\\n\\- one\\\n1\\. two\\\n\\# end\n",
       "\n| `-q, --No FILE` | a\\|b<br>c i.e. d\\\\x1b. \\*E\\* |\n"}) {
    EXPECT_THAT(shown, testing::HasSubstr(part));
  }
}

TEST(ReferenceTest, BadLinesAreRefused) {
  const DiskTree tree;
  const std::string usage = "\nusage: autocli --reference man|markdown DIR\ntry: autocli --help\n";
  EXPECT_EQ(tree.Run("--reference pdf /"),
            (Ran{2, "", "error: \"pdf\" is none of man, markdown" + usage}));
  EXPECT_EQ(tree.Run("--reference man /no"),
            (Ran{2, "", "error: cannot write into \"/no\": No such file or directory" + usage}));
}

}  // namespace autocli::test
