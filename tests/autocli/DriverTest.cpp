#include <algorithm>
#include <nlohmann/json.hpp>

#include "autocli/tools/Declarations.h"
#include "tests/autocli/Support.h"

namespace autocli::test {

using Corvex::Declare::Refuse;
using Corvex::Declare::Succeed;
using testing::HasSubstr;
using testing::StartsWith;

TEST(DriverTest, GlobalOptionsAndPathMayBeMixed) {
  const DiskTree tree;
  const std::pair<const char*, const char*> cases[] = {
      {"--formatter csv --fields=Name,Size disk list", "autocli"},
      {"disk --formatter=csv list --fields Name,Size", "autocli"},
      {"disk list --fields Name,Size --formatter csv --", "autocli"},
      {"--formatter csv disk --fields Name,Size -- list", "/usr/bin/autocli"},
      // A link that is named like a namespace implies its word.
      {"--formatter=csv list --fields=Name,Size", "/bin/disk"},
      {"disk list --fields=Name,Size --formatter=csv", ""},
  };
  for (const auto& [line, program] : cases) {
    EXPECT_EQ(tree.Run(line, {}, program), (Ran{0, "Name,Size\na,5\n", ""})) << line;
  }
  const std::string bare = "disk list --no-header --fields Size,Name --formatter ";
  EXPECT_EQ(tree.Run(bare + "table"), (Ran{0, "5  a\n", ""}));
  EXPECT_EQ(tree.Run(bare + "csv"), (Ran{0, "5,a\n", ""}));
}

TEST(DriverTest, ACommandMayTakeTheRestOfTheLine) {
  const TestCompanion companion(R"({"disk grow": {"rest": "words"}})");
  DiskTree tree;
  tree.loaded = companion.plugins;
  tree.grow->input = [] {
    return Declare::Inputs(
        {{.name = "wait", .type = ParameterType::Flag},
         {.name = "words", .type = ParameterType::StringList, .required = true}});
  };
  tree.grow->prototype = Texts({});
  tree.grow->execute = [](const InputPtr& input, const OutputPtr& output) {
    Words words;
    input->GetParameterList("words", words);
    output->SetRootObject(Texts(words));
  };
  const std::pair<const char*, Ran> cases[] = {
      {"disk grow a --wait -x -- --help", {0, "a\n--wait\n-x\n--\n--help\n", ""}},
      {"disk grow --wait --formatter csv disk list", {0, "disk\nlist\n", ""}},
      {"disk grow --wait",
       {2, "",
        "error: \"WORDS...\" is missing\nusage: autocli disk grow [--wait] WORDS...\n"
        "try: autocli disk grow --help\n"}},
  };
  for (const auto& [line, ran] : cases) EXPECT_EQ(tree.Run(line), ran) << line;
}

TEST(DriverTest, RefusalsSayWhatAndHow) {
  const std::string root = "autocli [global options] PATH... [options]\ntry: autocli --help\n";
  const std::string disk = "autocli disk COMMAND... [options]\ntry: autocli disk --help\n";
  const std::string list = "autocli disk list\ntry: autocli disk list --help\n";
  const std::string grow =
      "autocli disk grow --name STRING [--size INT]\ntry: autocli disk grow --help\n";
  const std::tuple<const char*, std::string, std::string> cases[] = {
      {"dsik list", "error: unknown command \"dsik\", did you mean \"disk\"?\n", root},
      {"disk lst --unknown --name x word",
       "error: unknown command \"lst\" in \"disk\", did you mean \"list\"?\n", disk},
      {"disk grow --nmae=x word --size many",
       "error: unknown option \"--nmae\", did you mean \"--name\"?\n"
       "error: unexpected argument \"word\"\n"
       "error: option \"--size\" takes a 64-bit decimal integer, not \"many\"\n"
       "error: required option \"--name\" is missing\n",
       grow},
      {"disk grow --name --formatter simple", "error: option \"--name\" needs a value\n", grow},
      {"disk list --fields Nmae,Size,Size,,Colour",
       "error: unknown field \"Nmae\", did you mean \"Name\"? The fields are: Name, Size, Fast, "
       "Tags\n"
       "error: field \"Size\" is named twice in \"--fields\"\n"
       "error: unknown field \"\"\nerror: unknown field \"Colour\"\n",
       list},
      {"disk grow -nx --fields=A", "error: unknown field \"A\", the result has no fields\n", grow},
      {"disk list --fields color",
       "error: unknown field \"color\", the fields are: Name, Size, Fast, Tags\n", list},
      {"disk list -formatter json -h=x",
       "error: unknown option \"-formatter\", did you mean \"--formatter\"?\n"
       "error: option \"-h\" takes no value, not \"x\"\n",
       list},
      {"disk list \x1b", "error: unexpected argument \"\\x1b\"\n", list},
  };
  DiskTree tree;
  tree.list->execute = tree.grow->execute = [](const InputPtr&, const OutputPtr&) {
    ADD_FAILURE() << "a refused line runs nothing";
  };
  for (const auto& [line, errors, usage] : cases) {
    EXPECT_EQ(tree.Run(line), (Ran{2, "", errors + "usage: " + usage}));
  }
}

TEST(DriverTest, WordsAreShownAsTheyWereTyped) {
  const DiskTree tree;
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"shrink", "usage: disk COMMAND... [options]\n", "\ntry: disk --help\n"},
      {"--help", "\nusage: disk COMMAND... [options]\n", "\nmore: disk help COMMAND...\n"},
      {"grow -h", "\nusage: disk grow --name", "\neverywhere: "},
  };
  for (const auto& [line, usage, end] : cases) {
    const Ran ran = tree.Run(line, {}, "/bin/disk");
    EXPECT_THAT(ran.out + ran.err, testing::AllOf(HasSubstr(usage), HasSubstr(end))) << line;
  }
  EXPECT_THAT(tree.Run("grow -nx --formatter json", {}, "disk").out,
              StartsWith("{\"command\":\"disk grow\""));
  EXPECT_THAT(tree.Run("disk --help").out, HasSubstr("\nmore: autocli help disk COMMAND...\n"));
}

TEST(DriverTest, PluginsAreListedWithWhatBecameOfThem) {
  const DiskTree tree;
  EXPECT_EQ(tree.Run("--plugins --formatter csv", {"bad"}),
            (Ran{3, "Name,Version,Loaded,Path,Problem\nx.so,,false,/plugins/x.so,bad\n",
                 "error: plug-in \"/plugins/x.so\" could not be loaded: bad\n"}));
  EXPECT_EQ(tree.Run("--plugins --fields Loaded --formatter csv", {""}).out, "Loaded\ntrue\n");
}

TEST(DriverTest, HelpWinsWhereverItStands) {
  DiskTree tree;
  tree.grow->execute = [](const InputPtr&, const OutputPtr&) { ADD_FAILURE() << "help runs"; };
  const std::string help = tree.Run("disk grow --help").out;
  EXPECT_THAT(help, StartsWith("Grow a disk\n\nusage: autocli disk grow "));
  for (const char* line :
       {"--help disk grow --version", "disk --help grow -x word", "disk grow --size many --help",
        "help disk grow", "disk help grow", "-h disk grow", "disk grow -h",
        "--color auto help --fields A disk grow --help"}) {
    EXPECT_EQ(tree.Run(line), (Ran{0, help, ""})) << line;
  }
  EXPECT_EQ(tree.Run("disk nothing --help").status, 2);
  for (const char* tool : {"batch", "--reference", "--completion", "--plugins"}) {
    const std::string word = tool;
    const std::string usage = "\nusage: autocli " + word + " ";
    for (const std::string& line :
         {word + " --help", word + " man --help", word + " --keep-going x y -h --formatter"}) {
      const Ran ran = tree.Run(line);
      EXPECT_THAT(ran.out, HasSubstr(usage)) << line;
      EXPECT_EQ(ran.status, 0) << line;
    }
    EXPECT_NE(tree.Run(word + " -- --help").status, 0) << "a word like any other";
  }
  EXPECT_EQ(tree.Run("help dsik"), tree.Run("dsik"));
  EXPECT_THAT(tree.Run("hlep").err, StartsWith("error: unknown command \"hlep\", did you mean "));
  EXPECT_THAT(tree.Run("help help").out, HasSubstr("\nusage: autocli help [PATH...]\n"));
  // Half a path is refused, with what help would say.
  EXPECT_EQ(tree.Run(""), (Ran{2, "", tree.Run("--help").out}));
  EXPECT_EQ(tree.Run("disk"), (Ran{2, "", tree.Run("disk --help").out}));
}

TEST(DriverTest, WithoutAnyCommand) {
  DiskTree tree;
  const std::string version = tree.Run("disk grow --version").out;
  EXPECT_THAT(version, testing::MatchesRegex("autocli [0-9.]+\n"));
  tree.root = Namespace::New();
  EXPECT_EQ(tree.Run("--version no such"), (Ran{0, version, ""}));
  EXPECT_EQ(tree.Run("--help").status, 0);
  EXPECT_THAT(tree.Run("disk").err,
              StartsWith("error: unknown command \"disk\", for no plug-in brought any command\n"));
}

TEST(DriverTest, ColourIsForPeople) {
  const DiskTree tree;
  const std::string red = "\x1b[1;31mwarning:\x1b[0m" + std::string(kNotLoaded).substr(8);
  EXPECT_EQ(tree.Run("disk grow -nx --color always", {"bad"}), (Ran{0, "true\n", red}));
  EXPECT_EQ(tree.Run("disk help --formatter json --color always"),
            tree.Run("disk help --formatter json"));
}

TEST(DriverTest, WhatIsDeclaredWronglyIsRefused) {
  using Declare::IntRange;
  using Declare::Parameter;
  using Declare::StringEnum;
  const std::pair<Parameter, std::string> cases[] = {
      {{.name = ""}, "\"\": the name is no word of letters, digits and hyphens"},
      {{.name = "a_b"}, "\"a_b\": the name is no word of letters, digits and hyphens"},
      {{.name = "x", .shortName = "xy"}, "\"x\": the short name \"xy\" is no letter"},
      {{.name = "x", .shortName = "5"}, "\"x\": the short name \"5\" is no letter"},
      {{.name = "wait"}, "\"wait\": the name is taken by another parameter"},
      {{.name = "x", .shortName = "w"},
       "\"x\": the short name \"w\" is taken by another parameter"},
      {{.name = "formatter"},
       "\"formatter\": the name is taken by an option that every command takes"},
      {{.name = "x", .type = static_cast<ParameterType>(9)}, "\"x\": it is of no known type"},
      {{.name = "x", .constraint = IntRange(0, 1)}, "\"x\": a range is for Int, not for String"},
      {{.name = "x", .type = ParameterType::Flag, .constraint = StringEnum({{"a", ""}})},
       "\"x\": an enumeration is for String and StringList, not for Flag"},
      {{.name = "x", .constraint = StringEnum({})}, "\"x\": the enumeration has no value"},
      {{.name = "x", .type = ParameterType::Int, .constraint = IntRange(5, 3)},
       "\"x\": the range begins at 5 and ends at 3"},
  };
  DiskTree tree;
  for (const auto& [parameter, problem] : cases) {
    tree.grow->input = [&bad = parameter] {
      return Declare::Inputs({{.name = "wait", .shortName = "w"}, bad});
    };
    EXPECT_EQ(tree.Run("disk grow --help"),
              (Ran{4, "", "error: command \"disk grow\": parameter " + problem + "\n"}));
    EXPECT_EQ(tree.Run("--plugins").status, 0) << "no plug-in brought it";
  }
  tree.grow->input = [] {
    auto spec = Declare::Inputs({{.name = "wait"}, {.name = "x", .shortName = "x"}});
    spec->GetParameters()[0]->SetShortName("x");
    return spec;
  };
  EXPECT_EQ(tree.Run("disk grow").status, 4) << "a name that was set later";
}

TEST(DriverTest, HintsThatSayNothingAreTold) {
  DiskTree tree;
  tree.list->SetDefaultOutputFormatter("tables");
  for (const auto& [key, value] : {std::pair("fields:Disk", "Name,Nmae"),
                                   {"header:Disk", "100% of %Name% or %Label%, 5 % of %"},
                                   {"units:Disk.Speed", "MB"},
                                   {"units:Disk.Size", "MB"},
                                   {"fields:Disc", "Name"},
                                   {"rest", "words"}}) {
    tree.list->SetDefaultOutputParameter(key, value);
  }
  const Words problems = DeclarationProblems(*tree.root)[""];
  std::string told;
  for (const auto& problem : problems) told += problem + "\n";
  EXPECT_EQ(told, R"(command "disk list": formatter "tables" does not exist
command "disk list": hint "fields:Disc" is for records of another type than the result's
command "disk list": hint "fields:Disk" names "Nmae", no field of the result
command "disk list": hint "header:Disk" names "Label", no field of the result
command "disk list": unknown hint "rest"
command "disk list": hint "units:Disk.Speed" names "Speed", no field of the result
)");
  EXPECT_EQ(tree.Run("disk list").out, "100% of a or %Label%, 5 % of %\n   Name: a\n");
}

TEST(DriverTest, ACommandIsAskedOnceForWhatItDeclares) {
  DiskTree tree;
  int asked = 0;
  tree.list->input = [&] {
    if (++asked > 1) tree.list->prototype = MetaString::New();
    return InputSpec::New();
  };
  EXPECT_EQ(tree.Run("disk list --fields Name").out, "Name: a\n");
  EXPECT_EQ(asked, 1);
}

TEST(DriverTest, TheHighestStatusWinsAndEveryFaultIsTold) {
  using Action = std::function<void(const OutputPtr&)>;
  const Action succeeds = [](const OutputPtr& output) { Succeed(output); };
  const Action refuses = [](const OutputPtr& output) { Refuse(output, "No."); };
  const Action doesNothing = [](const OutputPtr&) {};
  const Action answersElse = [](const OutputPtr& out) { out->SetRootObject(MetaInt::New(1)); };
  const std::string otherShape = "the result is not of the declared shape: int instead of bool\n";
  const Action throwsStrangely = [](const OutputPtr&) { throw 5; };
  const Action doesBoth = [](const OutputPtr& output) {
    Succeed(output);
    Refuse(output, "two\nlines");
  };
  const Action breaksOff = [&](const OutputPtr& output) {
    doesBoth(output);
    throw std::runtime_error("out of \x1b luck");
  };
  const std::string told = std::string(kNotLoaded) + "error: two\\nlines\n";
  const std::string failed = "error: command \"disk grow\": failed unexpectedly: ";
  const std::tuple<Action, Words, Ran> cases[] = {
      {succeeds, {}, {0, "true\n", ""}},
      {refuses, {}, {1, "", "error: No.\n"}},
      {succeeds, {"bad"}, {0, "true\n", kNotLoaded}},
      {doesBoth, {"bad"}, {1, "true\n", told}},
      {breaksOff, {"bad"}, {4, "", told + failed + "out of \\x1b luck\n"}},
      {doesNothing, {}, {4, "", failed + "it gave neither a result nor an error\n"}},
      {answersElse, {}, {4, "", failed + otherShape}},
      {throwsStrangely, {}, {4, "", failed + "an exception that does not say what it is\n"}},
  };
  DiskTree tree;
  for (const auto& [action, pluginFaults, ran] : cases) {
    tree.grow->execute = [&act = action](const InputPtr&, const OutputPtr& output) { act(output); };
    EXPECT_EQ(tree.Run("disk grow -nx", pluginFaults), ran);
    const Ran json = tree.Run("disk grow -nx --formatter json", pluginFaults);
    EXPECT_EQ(json, (Ran{ran.status, json.out, ""}));
    const auto document = nlohmann::json::parse(json.out);
    EXPECT_EQ(document["ok"], ran.status == 0);
    EXPECT_TRUE(std::cmp_equal(document["errors"].size(), std::ranges::count(ran.err, '\n')));
  }
  EXPECT_EQ(tree.Run("disk --help", {"bad"}).status, 0);
  EXPECT_EQ(tree.Run("disk grow --describe", {"bad"}).err, kNotLoaded);
  const Ran unknown = tree.Run("disc grow -nx", {"bad"});
  EXPECT_EQ(unknown.status, 3) << "it may be the missing plug-in's";
  EXPECT_THAT(unknown.err, StartsWith("error: plug-in \"/plugins/x.so\" could not be loaded: bad\n"
                                      "error: unknown command \"disc\""));
}

TEST(DriverTest, JsonIsOneDocumentWhateverHappens) {
  const DiskTree tree;
  const std::string start =
      R"({"command":"disk","ok":false,"result":null,"errors":[{"kind":"plugin","message":"plug-in \"/plugins/x.so\" could not be loaded: bad"},)"
      R"({"kind":"usage","message":")";
  const std::tuple<std::string, std::string, int> cases[] = {
      {"disk new --size= x", R"(unknown command \"new\" in \"disk\")", 3},
      {"disk", R"(a command is missing after \"disk\")", 2},
      {"disk --\xff", "unknown option \\\"--\xef\xbf\xbd\\\"", 2},
  };
  for (const auto& [line, message, status] : cases) {
    EXPECT_EQ(tree.Run("--formatter json " + line, {"bad"}),
              (Ran{status, start + message + "\"}]}\n", ""}));
  }
  const auto help = nlohmann::json::parse(tree.Run("disk --help --formatter=json").out);
  EXPECT_EQ(help["result"], tree.Run("disk --help").out);
}

TEST(DriverTest, FailedWritesAreFailures) {
  TextSink out;
  TextSink err;
  out.error = ENOSPC;
  EXPECT_EQ(autocli::Run({"autocli", "disk", "list"}, DiskTree().root, {}, out, err), 4);
  EXPECT_EQ(err.text, "error: the output could not be written: No space left on device\n");
  TextSink brief;
  brief.error = EIO;
  for (const char* piece : {"lost", "kept"}) {
    brief.Buffer() += piece;
    EXPECT_FALSE(brief.Flush()) << "what came later makes nothing whole";
  }
}

}  // namespace autocli::test
