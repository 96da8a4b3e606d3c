#include <nlohmann/json.hpp>

#include "autocli/help/Help.h"
#include "autocli/help/Placeholders.h"
#include "autocli/text/Escape.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using Corvex::Declare::Inputs;
using Corvex::Declare::IntRange;
using Corvex::Declare::StringEnum;
using testing::HasSubstr;

TEST(HelpTest, PlaceholdersStandForTheAllowedValues) {
  const auto range = IntRange(0, 512);
  const auto modes = StringEnum({{"fast", "Takes risks."}, {"slow", ""}});
  const struct {
    std::shared_ptr<ParameterConstraint> constraint;
    const char* description;
    const char* expanded;
  } cases[] = {
      {modes, "Options are: %ENUM%.", "Options are: fast, slow."},
      {modes, "Mode.\n%FULLENUM%Only here.", "Mode.\n  fast: Takes risks.\n  slow\nOnly here."},
      {modes, "Values are: %FULLENUM%", "Values are:\n  fast: Takes risks.\n  slow\n"},
      {modes, "100% of %ENUM", "100% of %ENUM"},
      {range, "Level (%ENUM%, 0 means off)", "Level (0-512, 0 means off)"},
      {nullptr, "None: %ENUM%", "None: "},
  };
  for (const auto& [constraint, description, expanded] : cases) {
    const auto parameter = ParameterSpec::New("p", ParameterType::String);
    parameter->SetConstraint(constraint);
    parameter->SetDescription(description);
    EXPECT_EQ(ExpandedDescription(*parameter), expanded);
  }
}

TEST(HelpTest, CommandHelpSaysAllThatIsDeclared) {
  TestCommand command;
  command.SetDescription("Grow\x1b a disk.\nTakes a while.");
  const auto input = Inputs({{.name = "wait", .shortName = "w", .type = ParameterType::Flag},
                             {.name = "size",
                              .type = ParameterType::Int,
                              .required = true,
                              .constraint = IntRange(1, 9),
                              .description = "New size"},
                             {.name = "tag", .type = ParameterType::StringList},
                             {.name = "mode",
                              .shortName = "m",
                              .constraint = StringEnum({{"a", ""}, {"b", ""}}),
                              .description = "How.\nThe default is a."}});
  EXPECT_EQ(CommandHelp(command, *input, "disk grow"),
            "Grow\\x1b a disk.\n"
            "Takes a while.\n"
            "\n"
            "usage: autocli disk grow --size INT [--wait] [--tag STRING ...] [--mode STRING]\n"
            "\n"
            "options:\n"
            "  -w, --wait\n"
            "      --size INT     (required) New size\n"
            "                     range: 1-9\n"
            "      --tag STRING   may be given several times\n"
            "  -m, --mode STRING  How.\n"
            "                     The default is a.\n"
            "                     one of: a, b\n");
}

TEST(HelpTest, LongTextsAreBrokenAtBlanks) {
  EXPECT_EQ(Wrapped("aa bb cc", 2, 7), "aa bb\n  cc");
  EXPECT_EQ(Wrapped("aa  bb", 0, 10), "aa  bb") << "blanks between words stay";
  EXPECT_EQ(Wrapped("unbreakable b", 0, 5), "unbreakable\nb");
  EXPECT_EQ(Wrapped("a\n\nb", 2, 10), "a\n\n  b");
  EXPECT_EQ(Wrapped("", 2, 10), "");
  // Five wide characters take ten cells, in fifteen bytes.
  const std::string wide = "\xe7\x8c\xab\xe7\x8c\xab\xe7\x8c\xab\xe7\x8c\xab\xe7\x8c\xab";
  EXPECT_EQ(Wrapped(wide + " b", 0, 12), wide + " b");

  std::vector<Corvex::Declare::Parameter> many(12);
  const Words names = {"alpha", "beta",  "gamma",  "delta", "eta",   "theta",
                       "iota",  "kappa", "lambda", "omega", "sigma", "upsilon"};
  std::string description;
  for (int i = 0; i < 60; ++i) description += "words ";
  for (std::size_t i = 0; i < many.size(); ++i) {
    many[i].name = names[i].c_str();
    many[i].description = description;
  }
  std::istringstream help(CommandHelp(TestCommand(), *Inputs(many), "disk grow"));
  for (std::string line; std::getline(help, line);) EXPECT_LE(line.size(), 101U) << line;
}

TEST(HelpTest, NamespacesListTheirChildren) {
  const DiskTree tree;
  EXPECT_EQ(tree.Run({"disk", "--help"}).out,
            "Disks of the host\n\nusage: autocli disk COMMAND... [options]\n\ncommands:\n"
            "  list  List the disks\n  grow  Grow a disk\n");
  const Ran root = tree.Run({"--help"});
  EXPECT_EQ(root.status, 0);
  for (const char* part : {"  disk  Disks of the host\n", "--formatter STRING", "--fields STRING",
                           "--describe", "--version", "\n  4  "}) {
    EXPECT_THAT(root.out, HasSubstr(part));
  }
}

TEST(HelpTest, DescribeIsTheTreeAsDeclared) {
  DiskTree tree;
  tree.grow->prototype = DiskPrototype();
  tree.grow->SetDefaultOutputFormatter("table");
  tree.grow->SetDefaultOutputParameter("units:Disk.Size", "GB");
  EXPECT_EQ(nlohmann::ordered_json::parse(tree.Run({"disk", "grow", "--describe"}).out).dump(),
            R"({"name":"grow","kind":"command","description":"Grow a disk","parameters":[)"
            R"({"long":"name","short":"n","type":"String","required":true,"description":"",)"
            R"("constraint":null},)"
            R"({"long":"size","short":"s","type":"Int","required":false,"description":"",)"
            R"("constraint":{"type":"IntRange","min":-1,"max":512}}],)"
            R"("output":{"kind":"struct","type":"Disk","fields":[{"name":"Name","kind":"string"},)"
            R"({"name":"Size","kind":"int"},{"name":"Fast","kind":"bool"},)"
            R"({"name":"Tags","kind":"list","of":{"kind":"string"}}]},)"
            R"("formatter":"table","hints":{"units:Disk.Size":"GB"}})");

  tree.grow->prototype = MetaList::New(MetaType::String);
  tree.grow->SetDescription("bad \xff byte");
  tree.grow->input = [] {
    return Inputs({{.name = "mode",
                    .type = ParameterType::StringList,
                    .constraint = StringEnum({{"a", "first"}}),
                    .description = "%ENUM%"}});
  };
  const auto root = nlohmann::ordered_json::parse(tree.Run({"--describe"}).out);
  EXPECT_EQ(root["name"], "autocli");
  const auto& disk = root["children"][0];
  EXPECT_EQ(disk["kind"], "namespace");
  EXPECT_EQ(disk["children"][0]["output"]["of"]["type"], "Disk");
  const auto& grow = disk["children"][1];
  EXPECT_EQ(grow["description"], "bad \xef\xbf\xbd byte");
  EXPECT_EQ(grow["output"].dump(), R"({"kind":"list","of":{"kind":"string"}})");
  EXPECT_EQ(grow["parameters"][0]["description"], "%ENUM%");
  EXPECT_EQ(grow["parameters"][0]["constraint"].dump(),
            R"({"type":"StringEnum","values":[{"value":"a","description":"first"}]})");
}

TEST(HelpTest, OneBadCommandDoesNotHideTheOthers) {
  DiskTree tree;
  tree.grow->input = []() -> std::shared_ptr<InputSpec> { throw std::runtime_error("no host"); };
  tree.list->input = []() -> std::shared_ptr<InputSpec> { return nullptr; };
  const Ran ran = tree.Run({"--describe"});
  EXPECT_EQ(ran.status, 4);
  EXPECT_EQ(ran.err,
            "error: command \"list\": declares no input\n"
            "error: command \"grow\": cannot be declared: no host\n");
  const auto grow = nlohmann::json::parse(ran.out)["children"][0]["children"][1];
  EXPECT_EQ(grow["name"], "grow");
  EXPECT_EQ(grow["parameters"], nullptr);
}

}  // namespace
}  // namespace autocli::test
