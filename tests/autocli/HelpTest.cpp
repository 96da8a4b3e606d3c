#include <nlohmann/json.hpp>

#include "autocli/base/Escape.h"
#include "autocli/help/Help.h"
#include "autocli/help/Placeholders.h"
#include "tests/autocli/Support.h"

namespace autocli::test {

using Corvex::Declare::Inputs;
using Corvex::Declare::IntRange;
using Corvex::Declare::StringEnum;
using testing::HasSubstr;

TEST(HelpTest, PlaceholdersStandForTheAllowedValues) {
  const auto modes = StringEnum({{"fast", "Takes risks."}, {"slow", ""}});
  const auto expanded = [](const auto& constraint, const char* text) {
    const auto input = Inputs({{.name = "p", .constraint = constraint, .description = text}});
    return ExpandedDescription(*input->GetParameters()[0]);
  };
  const std::string both = "  fast: Takes risks.\n  slow\n";
  EXPECT_EQ(expanded(modes, "100% of %ENUM: %ENUM%."), "100% of %ENUM: fast, slow.");
  EXPECT_EQ(expanded(modes, "Mode.\n%FULLENUM%Only here."), "Mode.\n" + both + "Only here.");
  EXPECT_EQ(expanded(modes, "Values are: %FULLENUM%"), "Values are:\n" + both);
  EXPECT_EQ(expanded(IntRange(0, 512), "Level (%ENUM%, 0 is off)"), "Level (0-512, 0 is off)");
  EXPECT_EQ(expanded(IntRange(-1, 512), "%FULLENUM%"), "-1 to 512\n");
  EXPECT_EQ(expanded(nullptr, "None: %ENUM%"), "None: ");
}

TEST(HelpTest, CommandHelpSaysAllThatIsDeclared) {
  TestCommand command;
  command.SetDescription("Grow\x1b a disk.\nTakes a while.");
  const auto input = Inputs({
      {.name = "wait", .shortName = "w", .type = ParameterType::Flag},
      {.name = "size", .type = ParameterType::Int, .constraint = IntRange(-9, 1)},
      {.name = "tag", .type = ParameterType::StringList, .required = true, .description = "Word."},
      {.name = "a-very-long-name-of-an-option",
       .shortName = "m",
       .constraint = StringEnum({{"a", ""}, {"b", ""}}),
       .description = "How it is done, so to say: as-it-is-in-the-manual-of-the-disk.\nOr a."},
      {.name = "speed", .constraint = StringEnum({{"fast", "Risky."}, {"slow", ""}})},
  });
  const auto text = Explained(command, {input, Texts({}), ""}, "disk grow");
  const std::string start =
      "Grow\\x1b a disk.\n"
      "Takes a while.\n"
      "\n"
      "usage: autocli disk grow [--wait] [--size INT] --tag STRING ...\n"
      "    [--a-very-long-name-of-an-option STRING] [--speed STRING]\n"
      "\n"
      "options:\n"
      "  -w, --wait\n"
      "      --size INT                    range: -9 to 1\n"
      "      --tag STRING                  (required) Word.\n"
      "                                    may be given several times\n"
      "  -m, --a-very-long-name-of-an-option STRING\n"
      "                                    How it is done, so to say:\n"
      "                                    as-it-is-in-the-manual-of-the-disk.\n"
      "                                    Or a.\n"
      "                                    one of: a, b\n"
      "      --speed STRING                one of:\n"
      "                                      fast: Risky.\n"
      "                                      slow\n"
      "\n"
      "result: list of strings\n"
      "\n"
      "exit status: 0 done, 1 the command reported an error,\n";
  const Vocabulary vocabulary;
  const std::string help = CommandHelp(vocabulary, text, {});
  EXPECT_THAT(help, testing::StartsWith(start));

  std::string colored = CommandHelp(vocabulary, text, {.isColored = true});
  EXPECT_THAT(colored, HasSubstr("\n\x1b[1moptions:\x1b[0m\n  \x1b[36m-w, --wait\x1b[0m\n"
                                 "      \x1b[36m--size\x1b[0m INT  "));
  for (std::size_t at = 0; (at = colored.find('\x1b')) != std::string::npos;) {
    colored.erase(at, colored.find('m', at) - at + 1);
  }
  EXPECT_EQ(colored, help) << "colour adds escapes and nothing else";
}

TEST(HelpTest, LongTextsAreBrokenAtBlanks) {
  EXPECT_EQ(Wrapped("aa  bb", 0, 10), "aa  bb") << "blanks between words stay";
  EXPECT_EQ(Wrapped("unbreakable b", 0, 5), "unbreakable\nb");
  EXPECT_EQ(Wrapped("a\n\nb", 2, 10), "a\n\n  b");
  const std::string cats = "\xe7\x8c\xab\xe7\x8c\xab b";  // four cells and two, in eight bytes
  EXPECT_EQ(Wrapped(cats, 0, 6), cats);
}

TEST(HelpTest, TheRootSaysWhatIsForAll) {
  const std::string root = DiskTree().Run("--help").out;
  for (const char* part :
       {"  disk  Disks of the host\n", "How the result is written: simple, table, json, csv.",
        "  help [PATH...]  ", "--fields STRING", "\n  -h, --help  ", "--describe", "--version",
        "\n  4  "}) {
    EXPECT_THAT(root, HasSubstr(part));
  }
}

TEST(HelpTest, DescribeIsTheTreeAsDeclared) {
  DiskTree tree;
  tree.list->input = [] {
    return Inputs({{.name = "mode",
                    .type = ParameterType::StringList,
                    .constraint = StringEnum({{"a", "first"}}),
                    .description = "%ENUM%\xff"}});
  };
  tree.list->SetDefaultOutputFormatter("table");
  tree.list->SetDefaultOutputParameter("units:Disk.Size", "GB");
  const auto root = nlohmann::ordered_json::parse(tree.Run("--describe").out);
  EXPECT_EQ(root["name"], "autocli");
  const auto& disk = root["children"][0];
  EXPECT_EQ(disk["kind"], "namespace");
  EXPECT_EQ(disk["children"][0], nlohmann::ordered_json::parse(R"({
    "name": "list", "kind": "command", "description": "List the disks",
    "parameters": [{"long": "mode", "short": "", "type": "StringList", "required": false,
      "description": "%ENUM%\ufffd",
      "constraint": {"type": "StringEnum", "values": [{"value": "a", "description": "first"}]}}],
    "output": {"kind": "list", "of": {"kind": "struct", "type": "Disk", "fields": [
      {"name": "Name", "kind": "string"}, {"name": "Size", "kind": "int"},
      {"name": "Fast", "kind": "bool"},
      {"name": "Tags", "kind": "list", "of": {"kind": "string"}}]}},
    "formatter": "table", "hints": {"units:Disk.Size": "GB"}})"));
  const auto grow = nlohmann::ordered_json::parse(tree.Run("disk grow --describe").out);
  EXPECT_EQ(grow, disk["children"][1]);
  EXPECT_EQ(grow["parameters"][0]["required"], true);
  EXPECT_EQ(grow["parameters"][1]["constraint"].dump(),
            R"({"type":"IntRange","min":-1,"max":512})");
  // One bad command does not hide the others.
  tree.list->input = []() -> std::shared_ptr<InputSpec> { return nullptr; };
  tree.grow->input = []() -> std::shared_ptr<InputSpec> { throw std::runtime_error("no host"); };
  const Ran ran = tree.Run("--describe");
  EXPECT_EQ(nlohmann::json::parse(ran.out)["children"][0]["children"][1]["name"], "grow");
  EXPECT_EQ(ran, (Ran{4, ran.out,
                      "error: command \"disk list\": declares no input\n"
                      "error: command \"disk grow\": cannot be declared: no host\n"}));
}

}  // namespace autocli::test
