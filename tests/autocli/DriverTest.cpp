#include <algorithm>
#include <nlohmann/json.hpp>

#include "tests/autocli/Support.h"

namespace autocli::test {

using Corvex::Declare::Refuse;
using Corvex::Declare::Succeed;
using testing::StartsWith;

TEST(DriverTest, GlobalOptionsAndPathMayBeMixed) {
  const DiskTree tree;
  const struct {
    const char* line;
    const char* program = "/usr/bin/autocli";
  } cases[] = {
      {"--formatter csv --fields=Name,Size disk list"},
      {"disk --formatter=csv list --fields Name,Size"},
      {"disk list --fields Name,Size --formatter csv --"},
      {"--formatter csv disk --fields Name,Size -- list"},
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
    if (input->IsFlagSet("wait")) words.emplace_back("waited");
    output->SetRootObject(Texts(words));
  };
  const std::pair<const char*, Ran> cases[] = {
      {"disk grow a --wait -x -- --help", {0, "a\n--wait\n-x\n--\n--help\n", ""}},
      {"disk grow --wait --formatter csv disk list", {0, "disk\nlist\nwaited\n", ""}},
      {"disk grow --wait",
       {2, "",
        "error: \"WORDS...\" is missing\nusage: autocli disk grow [--wait] WORDS...\n"
        "try: autocli disk grow --help\n"}},
  };
  for (const auto& [line, ran] : cases) EXPECT_EQ(tree.Run(line), ran) << line;
  companion.Write(R"({"disk grow": {"rest": "wait"}})");
  EXPECT_EQ(tree.Run("disk grow a").status, 2) << "no list";
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
       "error: unknown field \"Nmae\", did you mean \"Name\"?\n"
       "error: field \"Size\" is named twice in \"--fields\"\n"
       "error: unknown field \"\"\nerror: unknown field \"Colour\"\n",
       list},
      {"disk grow -nx --fields=A", "error: unknown field \"A\", the result has no fields\n", grow},
      {"disk list \x1b", "error: unexpected argument \"\\x1b\"\n", list},
      {"disk list -- --help", "error: unexpected argument \"--help\"\n", list},
  };
  DiskTree tree;
  tree.list->execute = tree.grow->execute = [](const InputPtr&, const OutputPtr&) {
    ADD_FAILURE() << "a refused line runs nothing";
  };
  for (const auto& [line, errors, usage] : cases) {
    EXPECT_EQ(tree.Run(line), (Ran{2, "", errors + "usage: " + usage}));
  }
}

TEST(DriverTest, PluginsAreListedWithWhatBecameOfThem) {
  const DiskTree tree;
  const std::string told = "error: plug-in \"x.so\": bad\n";
  EXPECT_EQ(tree.Run("--plugins", {"bad"}), (Ran{3,
                                                 "Name  Version  Loaded  Path           Problem\n"
                                                 "----  -------  ------  -------------  -------\n"
                                                 "x.so           false   /plugins/x.so  bad\n",
                                                 told}));
  EXPECT_EQ(tree.Run("--plugins --formatter csv --fields Loaded", {""}),
            (Ran{0, "Loaded\ntrue\n", ""}));
  EXPECT_EQ(tree.Run("--plugins now"),
            (Ran{2, "",
                 "error: unexpected argument \"now\"\nusage: autocli --plugins\n"
                 "try: autocli --plugins --help\n"}));
}

TEST(DriverTest, HelpWinsWhereverItStands) {
  DiskTree tree;
  tree.grow->execute = [](const InputPtr&, const OutputPtr&) { ADD_FAILURE() << "help runs"; };
  const std::string help = tree.Run("disk grow --help").out;
  EXPECT_THAT(help, StartsWith("Grow a disk\n\nusage: autocli disk grow "));
  for (const char* line :
       {"--help disk grow --version", "disk --help grow -x word", "disk grow --size many --help",
        "help disk grow", "disk help grow", "--color auto help --fields A disk grow --help"}) {
    EXPECT_EQ(tree.Run(line), (Ran{0, help, ""})) << line;
  }
  EXPECT_EQ(tree.Run("disk nothing --help").status, 2);
  EXPECT_EQ(tree.Run("help dsik"), tree.Run("dsik"));
  EXPECT_THAT(tree.Run("hlep").err, StartsWith("error: unknown command \"hlep\", did you mean "));
  EXPECT_THAT(tree.Run("help help").out, testing::HasSubstr("\nusage: autocli help [PATH...]\n"));
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
  const std::string red = "\x1b[1;31merror:\x1b[0m plug-in \"x.so\": bad\n";
  EXPECT_EQ(tree.Run("disk grow -nx --color always", {"bad"}), (Ran{3, "true\n", red}));
  EXPECT_EQ(tree.Run("disk help --formatter json --color always"),
            tree.Run("disk help --formatter json"));
}

TEST(DriverTest, ACommandMayDeclareAGlobalNameItself) {
  DiskTree tree;
  std::string given;
  tree.grow->input = [] { return Declare::Inputs({{.name = "formatter"}, {.name = "version"}}); };
  tree.grow->execute = [&](const InputPtr& input, const OutputPtr& output) {
    given = input->GetParameter("formatter") + "/" + input->GetParameter("version");
    Succeed(output);
  };
  const Ran ran = tree.Run("--formatter json disk grow --formatter mine --version 2");
  EXPECT_EQ(given, "mine/2");
  EXPECT_EQ(ran.out, "{\"command\":\"disk grow\",\"ok\":true,\"result\":true,\"errors\":[]}\n");
}

TEST(DriverTest, TheHighestStatusWinsAndEveryFaultIsTold) {
  using Action = std::function<void(const OutputPtr&)>;
  const Action succeeds = [](const OutputPtr& output) { Succeed(output); };
  const Action refuses = [](const OutputPtr& output) { Refuse(output, "No."); };
  const Action doesNothing = [](const OutputPtr&) {};
  const Action answersElse = [](const OutputPtr& out) { out->SetRootObject(MetaInt::New(1)); };
  const Action throwsStrangely = [](const OutputPtr&) { throw 5; };
  const Action doesBoth = [](const OutputPtr& output) {
    Succeed(output);
    Refuse(output, "two\nlines");
  };
  const Action breaksOff = [&](const OutputPtr& output) {
    doesBoth(output);
    throw std::runtime_error("out of \x1b luck");
  };
  const std::string told = "error: plug-in \"x.so\": bad\nerror: two\\nlines\n";
  const std::string failed = "error: the command failed unexpectedly: ";
  const std::tuple<Action, Words, Ran> cases[] = {
      {succeeds, {}, {0, "true\n", ""}},
      {doesBoth, {}, {1, "true\n", "error: two\\nlines\n"}},
      {refuses, {}, {1, "", "error: No.\n"}},
      {succeeds, {"bad"}, {3, "true\n", "error: plug-in \"x.so\": bad\n"}},
      {doesBoth, {"bad"}, {3, "true\n", told}},
      {breaksOff, {"bad"}, {4, "", told + failed + "out of \\x1b luck\n"}},
      {doesNothing, {}, {4, "", failed + "the command gave neither a result nor an error\n"}},
      {answersElse,
       {},
       {4, "", failed + "the result is not of the declared shape: int instead of bool\n"}},
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
  EXPECT_EQ(tree.Run("disk --help", {"bad"}).status, 3);
  EXPECT_EQ(tree.Run("disk grow --describe", {"bad"}).err, "error: plug-in \"x.so\": bad\n");
}

TEST(DriverTest, JsonIsOneDocumentWhateverHappens) {
  const DiskTree tree;
  const std::string start =
      R"({"command":"disk","ok":false,"result":null,"errors":[{"kind":"plugin","message":"plug-in \"x.so\": bad"},)"
      R"({"kind":"usage","message":")";
  const std::pair<std::string, std::string> cases[] = {
      {"disk new --size= x", R"(unknown command \"new\" in \"disk\")"},
      {"disk", R"(a command is missing after \"disk\")"},
      {"disk --\xff", "unknown option \\\"--\xef\xbf\xbd\\\""},
  };
  for (const auto& [line, message] : cases) {
    EXPECT_EQ(tree.Run("--formatter json " + line, {"bad"}),
              (Ran{3, start + message + "\"}]}\n", ""}));
  }
  const auto help = nlohmann::json::parse(tree.Run("disk --help --formatter=json").out);
  EXPECT_EQ(help["result"], tree.Run("disk --help").out);
}

TEST(DriverTest, CommandsSuggestAFormatterAndTheUserDecides) {
  DiskTree tree;
  tree.list->SetDefaultOutputFormatter("table");
  tree.list->SetDefaultOutputParameter("fields:Disk", "Name");
  EXPECT_EQ(tree.Run("disk list").out, "Name\n----\na\n");
  EXPECT_EQ(tree.Run("disk list --formatter=simple").out, "Name: a\n");
  EXPECT_EQ(tree.Run("disk list --fields=Size").out, "Size\n----\n   5\n");
  tree.list->SetDefaultOutputFormatter("nonsense");
  EXPECT_EQ(tree.Run("disk list").out, "Name: a\n");
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
