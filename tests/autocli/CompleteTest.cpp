#include <unistd.h>

#include <cstdlib>

#include "tests/autocli/Support.h"

namespace autocli::test {

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
    companion.Write(R"({"disk grow": {"options": {
        "name": {"values": [{"command": "disk list", "field": "Name", "about": "Tags"}]},
        "disks": {"values": [{"command": "disk list", "field": "Name", "about": "Tags"}]}}}})");
    tree.list->execute = [](const InputPtr&, const OutputPtr& output) {
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
    std::vector<Plugin> plugins = companion.plugins;
    plugins.push_back({"/x.so", "x.so", {"broken"}});
    TextSink out;
    TextSink err;
    const int status = autocli::Run(words, tree.root, plugins, out, err);
    return {status, out.text, err.text};
  }

  TestCompanion companion;
  DiskTree tree;
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
  EXPECT_THAT(Ask({""}).out, HasSubstr("\n--completion\t"));
}

TEST_F(CompleteTest, TheRestOfALineMayBeALine) {
  companion.Write(R"({"disk grow": {"rest": "command", "options": {"command": {"is": "line"}}}})");
  tree.grow->input = [] {
    return Declare::Inputs({{.name = "wait", .type = ParameterType::Flag},
                            {.name = "command", .type = ParameterType::StringList}});
  };
  const std::pair<Words, const char*> cases[] = {
      {{"disk", "grow", "d"}, "disk\tDisks of the host\n"},
      {{"disk", "grow", "--wait", "disk", "l"}, "list\tList the disks\n"},
      {{"disk", "grow", "disk", "grow", "--w"}, "--wait\n"},
      {{"disk", "grow", "--w"}, "--wait\n"},
      {{"disk", "grow", "--com"}, ""},  // what takes the rest is no option
  };
  for (const auto& [words, lines] : cases) {
    EXPECT_EQ(Ask(words), (Ran{0, lines, ""})) << testing::PrintToString(words);
  }
}

TEST_F(CompleteTest, SourcesSayWhichRecordsCountForWhichLines) {
  tree.list->execute = [](const InputPtr&, const OutputPtr& output) {
    auto disks = Declare::ListOf(DiskPrototype());
    disks->Add(Disk("a", 5, true, {"x", "y"}));
    disks->Add(Disk("b", 5, false, {"x"}));
    disks->Add(Disk("", 7, false, {}));
    disks->Add(DiskPrototype());
    output->SetRootObject(disks);
  };
  const std::tuple<const char*, Words, const char*> cases[] = {
      {R"("where": {"Size": 5, "Fast": false})", {}, "b\n"},
      {R"("where": {"Tags": "y"})", {}, "a\n"},
      {R"("where": {"Tags": "x, y"})", {}, ""},
      {R"("except": {"Tags": "y", "Name": "b"})", {}, ""},
      {R"("except": {"Fast": true})", {}, "b\n"},
      {R"("where": {"None": ""})", {}, "a\nb\n"},
      {R"("when": {"mode": "fast"})", {}, ""},
      {R"("when": {"mode": "fast"})", {"--mode", "fast"}, "a\nb\n"},
      {R"("when": {"mode": "fast", "wait": true})", {"--mode", "fast"}, ""},
      {R"("unless": {"mode": "fast"})", {"--mode", "full"}, "a\nb\n"},
      {R"("unless": {"mode": "fast", "wait": true})", {"--wait"}, ""},
      {R"("when": {"sure": true, "formatter": "csv"})", {"--sure", "true"}, ""},
      // A second source, of which what is new is offered.
      {R"("where": {"Name": "b"}}, {"command": "disk list", "field": "Size")", {}, "b\n5\n7\n"},
      {R"("where": {"Name": "b"}}, {"command": "disk lost", "field": "Size")", {}, "b\n"},
      {R"("where": {"Name": "b"}}, {"command": "disk list --fields Size", "field": "Size")",
       {},
       "b\n"},
  };
  for (const auto& [source, given, lines] : cases) {
    companion.Write(R"({"disk grow": {"options": {"name": {"values": [
        {"command": "disk list", "field": "Name", )" +
                    std::string(source) + "}]}}}}");
    Words words = {"disk", "grow"};
    words.insert(words.end(), given.begin(), given.end());
    words.insert(words.end(), {"--name", ""});
    EXPECT_EQ(Ask(words), (Ran{0, lines, ""})) << source << testing::PrintToString(given);
  }
}

TEST_F(CompleteTest, APathGoesOnAsTheMachineHasIt) {
  companion.Write(
      R"({"disk grow": {"options": {"name": {"is": "file"}, "disks": {"is": "folder"}}}})");
  const ::test::Folder folder;
  for (const char* name : {"b", "a\nb", ".hidden", "a b"}) ::test::WriteFile(folder / name, "");
  std::filesystem::create_directories(folder / "ab/in");
  std::filesystem::create_symlink("ab", folder / "link");
  std::filesystem::create_symlink("nowhere", folder / "dangling");
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {"--name", "", "a b\nab/\nb\ndangling\nlink/\n"},
      {"--name", "a", "a b\nab/\n"},
      {"--name", ".", ".hidden\n"},
      {"--name", "link/", "link/in/\n"},
      {"--name", "b/", ""},
      {"--name", "none/", ""},
      {"--disks", "", "ab/\nlink/\n"},
      {"--disks", folder.path, folder.path + "/\n"},
      {"--disks", folder / "l", folder / "link/\n"},
  };
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.path);
  for (const auto& [option, begun, lines] : cases) {
    EXPECT_EQ(Ask({"disk", "grow", option, begun}), (Ran{0, lines, ""})) << option << begun;
  }
  EXPECT_EQ(Ask({"disk", "grow", "--name=l"}).out, "--name=link/\n");
  std::filesystem::current_path(before);
}

TEST_F(CompleteTest, WhatIsBrokenOrSlowIsNotHeardOf) {
  const Words words = {"disk", "grow", "--name", ""};
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

}  // namespace autocli::test
