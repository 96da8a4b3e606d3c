#include <unistd.h>

#include <cstdlib>

#include "autocli/tools/Scripts.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using Corvex::Declare::StringEnum;
using testing::HasSubstr;

/// The disk tree with options of all kinds, and with values for "--name" that "list" knows.
class CompleteTest : public testing::Test {
 protected:
  CompleteTest() {
    setenv("AUTOCLI_COMPLETE_MS", "60000", 1);  // a busy machine is no fault
    tree.grow->input = [] {
      return Declare::Inputs({
          {.name = "mode",
           .constraint = StringEnum({{"fast", "Risky.\nNever mind."}, {"full", ""}})},
          {.name = "wait", .shortName = "w", .type = ParameterType::Flag},
          {.name = "name", .shortName = "n", .required = true, .description = "Which."},
          {.name = "disks", .shortName = "d", .type = ParameterType::StringList},
          {.name = "sure", .type = ParameterType::Bool},
      });
    };
    tree.list->SetDefaultOutputParameter("completes:Name:Tags",
                                         "disk shrink --name, disk grow --name,disk grow --disks");
    tree.list->execute = [this](const InputPtr&, const OutputPtr& output) {
      const char* told = std::getenv("AUTOCLI_COMPLETING");
      wasTold = told != nullptr && told == std::to_string(getpid());
      auto disks = Declare::ListOf(DiskPrototype());
      disks->Add(Disk("a:0", 5, true, {"x\ty"}));
      disks->Add(Disk("b c", 5, true, {}));
      disks->Add(Disk("b\nc", 5, true, {"a shell could not type it"}));
      output->SetRootObject(disks);
    };
  }

  /// What the tool writes for the words, the last one being under the cursor.
  Ran Ask(Words words) const {
    words.insert(words.begin(), {"autocli", "--complete"});
    TextSink out;
    TextSink err;
    const int status = autocli::Run(words, tree.root, {{"/x.so", "x.so", {"broken"}}}, out, err);
    return {status, out.text, err.text};
  }

  DiskTree tree;
  bool wasTold = false;
};

TEST_F(CompleteTest, AWordGoesOnAsTheParserTakesIt) {
  const std::string own = "--name\trequired: Which.\n--mode\n--wait\n--disks\n--sure\n";
  const std::pair<Words, std::string> cases[] = {
      {{"di"}, "disk\tDisks of the host\n"},
      {{"--help"}, "--help\tSay what can follow, or what a command does.\n"},
      {{"disk", ""}, "list\tList the disks\ngrow\tGrow a disk\n"},
      {{"--completion", "z"}, "zsh\n"},
      {{"--completion", "zsh", ""}, ""},
      {{"dusk", ""}, ""},
      {{"disk", "grow", ""}, own},
      {{"disk", "grow", "--na"}, "--name\trequired: Which.\n"},
      {{"disk", "grow", "-wn", "a", "-d", "b", "--d"},
       "--disks\n--describe\tWrite the commands below a path as one JSON document.\n"},
      {{"disk", "grow", "--help", ""}, ""},
      {{"disk", "grow", "--", "--"}, ""},
      {{"disk", "grow", "x", ""}, own},
      {{"disk", "grow", "--mode", ""}, "fast\tRisky.\nfull\n"},
      {{"disk", "grow", "--mode=fu"}, "--mode=full\n"},
      {{"disk", "grow", "--sure", "t"}, "true\n"},
      {{"--formatter", "t"}, "table\n"},
      {{"disk", "--vers"}, "--version\tSay which version this is.\n"},
      {{"disk", "list", ""}, ""},
      {{"disk", "list", "--fields", "Name, S"}, "Name, Size\n"},
      {{"disk", "list", "--fields=Size,Name,"},
       "--fields=Size,Name,Fast\n--fields=Size,Name,Tags\n"},
      {{"disk", "--fields", "N"}, ""},
      {{"disk", "grow", "--name", ""}, "a:0\tx\\ty\nb c\n"},
      {{"disk", "grow", "-d", "a:0", "-d", ""}, "b c\n"},
      {{"disk", "grow", "-wna:"}, "-wna:0\tx\\ty\n"},
      {{"disk", "grow", "-w"}, "-w\n"},
      {{"disk", "list", "-h"}, "-h\tSay what can follow, or what a command does.\n"},
      {{"disk", "grow", "-wx"}, ""},
  };
  for (const auto& [words, lines] : cases) {
    EXPECT_EQ(Ask(words), (Ran{0, lines, ""})) << testing::PrintToString(words);
  }
  EXPECT_TRUE(wasTold) << "the host must know that nothing may change";
  EXPECT_EQ(std::getenv("AUTOCLI_COMPLETING"), nullptr);
  EXPECT_THAT(Ask({""}).out, HasSubstr("\n--completion\t"));
  tree.grow->SetDefaultOutputParameter("rest", "command");
  tree.grow->input = [] {
    return Declare::Inputs({{.name = "command", .type = ParameterType::StringList}});
  };
  EXPECT_EQ(Ask({"disk", "grow", "--com"}).out, "") << "what takes the rest is no option";
}

TEST_F(CompleteTest, WhatIsBrokenOrSlowIsNotHeardOf) {
  const Words words = {"disk", "grow", "--name", ""};
  tree.list->execute = [](const InputPtr&, const OutputPtr& output) {
    Declare::Refuse(output, "no host");
  };
  EXPECT_EQ(Ask(words), (Ran{0, "", ""}));
  tree.list->execute = [](const InputPtr&, const OutputPtr&) { throw std::runtime_error("no"); };
  EXPECT_EQ(Ask(words), (Ran{0, "", ""}));
  tree.list->input = [] { return Declare::Inputs({{.name = "all", .required = true}}); };
  tree.list->execute = [](const InputPtr&, const OutputPtr&) { FAIL() << "cannot be executed"; };
  EXPECT_EQ(Ask(words), (Ran{0, "", ""}));
  setenv("AUTOCLI_COMPLETE_MS", "20", 1);
  tree.list->input = [] { return InputSpec::New(); };
  tree.list->execute = [](const InputPtr&, const OutputPtr&) {
    while (true) pause();
  };
  EXPECT_EXIT(Ask(words), testing::ExitedWithCode(0), "^$");
}

TEST_F(CompleteTest, AScriptIsWrittenForAKnownShell) {
  EXPECT_THAT(tree.Run("--completion bash").out, HasSubstr("_complete autocli\n"))
      << "no link named disk is there";
  EXPECT_THAT(CompletionScript("zsh", {"autocli", "disk"}), HasSubstr("#compdef autocli disk\n"));
  const std::pair<const char*, const char*> refusals[] = {
      {"--completion", "the shell is missing: bash, zsh or fish"},
      {"--completion bsh", "unknown shell \"bsh\", did you mean \"bash\"?"},
      {"--completion zsh x", "unexpected argument \"x\""},
  };
  for (const auto& [line, message] : refusals) {
    const Ran ran = tree.Run(line);
    EXPECT_EQ(ran.status, 2);
    EXPECT_THAT(ran.err, HasSubstr(std::string("error: ") + message + "\nusage: "));
  }
}

}  // namespace
}  // namespace autocli::test
