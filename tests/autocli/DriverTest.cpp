#include <fcntl.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include "autocli/driver/Driver.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const char* const kGrowUsage =
    "usage: autocli disk grow --name STRING [--size INT]\ntry: autocli disk grow --help\n";
const char* const kListUsage = "usage: autocli disk list\ntry: autocli disk list --help\n";

TEST(DriverTest, GlobalOptionsAndPathMayBeMixed) {
  const DiskTree tree;
  for (const Words& words :
       std::vector<Words>{{"--formatter", "csv", "--fields=Name,Size", "disk", "list"},
                          {"disk", "--formatter=csv", "list", "--fields", "Name, Size"},
                          {"disk", "list", "--fields", "Name,Size", "--formatter", "csv", "--"},
                          {"--formatter", "csv", "disk", "--fields", "Name,Size", "--", "list"}}) {
    SCOPED_TRACE(testing::PrintToString(words));
    const Ran ran = tree.Run(words);
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "Name,Size\na,5\n");
    EXPECT_EQ(ran.err, "");
  }
}

TEST(DriverTest, RefusalsSayWhatAndHow) {
  const DiskTree tree;
  const struct {
    Words words;
    std::string err;
  } cases[] = {
      {{"dsik", "list"},
       "error: unknown command \"dsik\", did you mean \"disk\"?\n"
       "usage: autocli [global options] PATH... [options]\ntry: autocli --help\n"},
      {{"disk", "lst", "--unknown", "--name", "x", "word"},
       "error: unknown command \"lst\" in \"disk\", did you mean \"list\"?\n"
       "usage: autocli disk COMMAND... [options]\ntry: autocli disk --help\n"},
      {{"disk", "grow", "-x", "word"},
       "error: unknown option \"-x\"\nerror: unexpected argument \"word\"\n"
       "error: required option \"--name\" is missing\n" +
           std::string(kGrowUsage)},
      {{"disk", "grow", "--name", "--formatter", "simple", "x"},
       "error: option \"--name\" needs a value\nerror: unexpected argument \"x\"\n" +
           std::string(kGrowUsage)},
      {{"disk", "list", "--fields", "Nmae,Size,Size,,Colour"},
       "error: unknown field \"Nmae\", did you mean \"Name\"?\n"
       "error: field \"Size\" is named twice in \"--fields\"\n"
       "error: unknown field \"\"\nerror: unknown field \"Colour\"\n" +
           std::string(kListUsage)},
      {{"disk", "grow", "--name=x", "--fields=A"},
       "error: unknown field \"A\", the result has no fields\n" + std::string(kGrowUsage)},
      {{"disk", "list", "--formatter", "jsno"},
       "error: option \"--formatter\" takes one of \"simple\", \"table\", \"json\", \"csv\", not "
       "\"jsno\", did you mean \"json\"?\n" +
           std::string(kListUsage)},
      {{"disk", "list", "--formater", "csv"},
       "error: unknown option \"--formater\", did you mean \"--formatter\"?\n" +
           std::string(kListUsage)},
      {{"disk", "list", "\x1b"},
       "error: unexpected argument \"\\x1b\"\n" + std::string(kListUsage)},
  };
  for (const auto& [words, err] : cases) {
    SCOPED_TRACE(testing::PrintToString(words));
    const Ran ran = tree.Run(words);
    EXPECT_EQ(ran.status, 2);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, err);
  }
}

TEST(DriverTest, RefusedLinesRunNothing) {
  DiskTree tree;
  int runs = 0;
  tree.list->execute = tree.grow->execute = [&](const InputPtr&, const OutputPtr& output) {
    ++runs;
    output->AddErrorMessage("ran");
  };
  EXPECT_EQ(tree.Run({"disk", "list", "--fields", "X"}).status, 2);
  EXPECT_EQ(tree.Run({"disk", "grow"}).status, 2);
  EXPECT_EQ(tree.Run({"disk", "grow", "--help"}).status, 0);
  EXPECT_EQ(tree.Run({"disk", "grow", "--describe"}).status, 0);
  EXPECT_EQ(runs, 0);
}

TEST(DriverTest, HelpWinsWhereverItStands) {
  const DiskTree tree;
  const std::string help = tree.Run({"disk", "grow", "--help"}).out;
  EXPECT_THAT(help, StartsWith("Grow a disk\n\nusage: autocli disk grow "));
  for (const Words& words : std::vector<Words>{{"--help", "disk", "grow"},
                                               {"disk", "--help", "grow", "-x", "word"},
                                               {"disk", "grow", "--size", "many", "--help"}}) {
    const Ran ran = tree.Run(words);
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, help);
    EXPECT_EQ(ran.err, "");
  }
  EXPECT_EQ(tree.Run({"disk", "nothing", "--help"}).status, 2);
  EXPECT_EQ(tree.Run({"disk", "list", "--", "--help"}).status, 2);
}

TEST(DriverTest, BareNamespacesShowTheirHelpAsARefusal) {
  const DiskTree tree;
  for (const Words& words : {Words{}, Words{"disk"}}) {
    Words asked = words;
    asked.emplace_back("--help");
    const Ran ran = tree.Run(words);
    EXPECT_EQ(ran.status, 2);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, tree.Run(asked).out);
  }
}

TEST(DriverTest, VersionAsksNobody) {
  const auto empty = Namespace::New();
  TextSink out;
  TextSink err;
  EXPECT_EQ(autocli::Run({"autocli", "--version", "no", "such"}, empty, {}, out, err), 0);
  EXPECT_THAT(out.text, testing::MatchesRegex("autocli [0-9.]+\n"));
  EXPECT_EQ(DiskTree().Run({"disk", "list", "--version"}).out, out.text);
}

TEST(DriverTest, ACommandMayDeclareAGlobalNameItself) {
  DiskTree tree;
  std::string given;
  tree.grow->input = [] {
    return Corvex::Declare::Inputs({{.name = "formatter"}, {.name = "version"}});
  };
  tree.grow->execute = [&](const InputPtr& input, const OutputPtr& output) {
    given = input->GetParameter("formatter") + "/" + input->GetParameter("version");
    Corvex::Declare::Succeed(output);
  };
  const Ran ran =
      tree.Run({"--formatter", "json", "disk", "grow", "--formatter", "mine", "--version", "2"});
  EXPECT_EQ(given, "mine/2");
  EXPECT_EQ(ran.out, R"({"command":"disk grow","ok":true,"result":true,"errors":[]})"
                     "\n");
}

TEST(DriverTest, LinksImplyTheirWord) {
  const DiskTree tree;
  EXPECT_EQ(tree.Run({"list", "--formatter=csv", "--fields=Name"}, {}, "/bin/disk").out,
            "Name\na\n");
  EXPECT_EQ(tree.Run({"--formatter=csv", "list", "--fields=Name"}, {}, "disk").out, "Name\na\n");
  EXPECT_EQ(tree.Run({"disk", "list"}, {}, "other").status, 0);
  EXPECT_EQ(tree.Run({"disk", "list"}, {}, "").status, 0);
  TextSink out;
  TextSink err;
  EXPECT_EQ(autocli::Run({}, tree.root, {}, out, err), 2) << "not even a program name";
}

TEST(DriverTest, TheHighestStatusWinsAndEveryFaultIsTold) {
  DiskTree tree;
  const auto answer = [](const MetaObjectPtr& result, const Words& errors, bool throws) {
    return [=](const InputPtr&, const OutputPtr& output) {
      if (result) output->SetRootObject(result);
      for (const auto& error : errors) output->AddErrorMessage(error);
      if (throws) throw std::runtime_error("out of \x1b luck");
    };
  };
  const struct {
    std::function<void(const InputPtr&, const OutputPtr&)> execute;
    Words pluginFaults;
    int status;
    std::string out;
    std::string err;
  } cases[] = {
      {answer(MetaBool::New(true), {}, false), {}, 0, "true\n", ""},
      {answer(MetaBool::New(false), {"No.", "two\nlines"}, false),
       {},
       1,
       "false\n",
       "error: No.\nerror: two\\nlines\n"},
      {answer(nullptr, {"No."}, false), {}, 1, "", "error: No.\n"},
      {answer(MetaBool::New(true), {}, false), {"bad.so"}, 3, "true\n", "error: bad.so\n"},
      {answer(nullptr, {"No."}, false), {"bad.so"}, 3, "", "error: bad.so\nerror: No.\n"},
      {answer(MetaBool::New(true), {"No."}, true),
       {"bad.so"},
       4,
       "",
       "error: bad.so\nerror: No.\n"
       "error: the command failed unexpectedly: out of \\x1b luck\n"},
      {answer(nullptr, {}, false),
       {},
       4,
       "",
       "error: the command failed unexpectedly: the command gave neither a result nor an error\n"},
      {answer(MetaInt::New(1), {}, false),
       {},
       4,
       "",
       "error: the command failed unexpectedly: the result is not of the declared shape: int "
       "instead of bool\n"},
      {[](const InputPtr&, const OutputPtr&) { throw 5; },
       {},
       4,
       "",
       "error: the command failed unexpectedly: an exception that does not say what it is\n"},
  };
  for (const auto& [execute, pluginFaults, status, out, err] : cases) {
    SCOPED_TRACE(err);
    tree.grow->execute = execute;
    const Ran ran = tree.Run({"disk", "grow", "-nx"}, pluginFaults);
    EXPECT_EQ(ran.status, status);
    EXPECT_EQ(ran.out, out);
    EXPECT_EQ(ran.err, err);

    const Ran json = tree.Run({"disk", "grow", "-nx", "--formatter", "json"}, pluginFaults);
    EXPECT_EQ(json.status, status);
    EXPECT_EQ(json.err, "");
    const auto document = nlohmann::json::parse(json.out);
    EXPECT_EQ(document["ok"], status == 0);
    EXPECT_EQ(document["errors"].size(),
              static_cast<std::size_t>(std::count(err.begin(), err.end(), '\n')));
  }
  EXPECT_EQ(tree.Run({"disk", "--help"}, {"bad.so"}).status, 3);
  EXPECT_EQ(tree.Run({"disk", "grwo"}, {"bad.so"}).status, 3);
  EXPECT_EQ(tree.Run({"disk", "grow", "--describe"}, {"bad.so"}).err, "error: bad.so\n");
}

TEST(DriverTest, JsonIsOneDocumentWhateverHappens) {
  DiskTree tree;
  const struct {
    Words words;
    Words pluginFaults;
    int status;
    const char* out;
  } cases[] = {
      {{"disk", "list", "--fields", "Size"},
       {},
       0,
       R"({"command":"disk list","ok":true,"result":[{"Size":5}],"errors":[]})"},
      {{"disk", "grwo", "--size=", "x"},
       {},
       2,
       R"({"command":"disk","ok":false,"result":null,"errors":[{"kind":"usage","message":)"
       R"("unknown command \"grwo\" in \"disk\", did you mean \"grow\"?"}]})"},
      {{"disk"},
       {"bad"},
       3,
       R"({"command":"disk","ok":false,"result":null,"errors":[{"kind":"plugin","message":"bad"},)"
       R"({"kind":"usage","message":"a command is missing behind \"disk\""}]})"},
      {{},
       {},
       2,
       R"({"command":"","ok":false,"result":null,"errors":[)"
       R"({"kind":"usage","message":"a command is missing"}]})"},
      {{"disk", "grow", "--\xff"},
       {},
       2,
       "{\"command\":\"disk grow\",\"ok\":false,\"result\":null,\"errors\":["
       "{\"kind\":\"usage\",\"message\":\"unknown option \\\"--\xef\xbf\xbd\\\"\"},"
       "{\"kind\":\"usage\",\"message\":\"required option \\\"--name\\\" is missing\"}]}"},
  };
  for (const auto& [words, pluginFaults, status, out] : cases) {
    SCOPED_TRACE(out);
    Words json = words;
    json.insert(json.begin(), {"--formatter", "json"});
    const Ran ran = tree.Run(json, pluginFaults);
    EXPECT_EQ(ran.status, status);
    EXPECT_EQ(ran.out, std::string(out) + "\n");
    EXPECT_EQ(ran.err, "");
  }
  const auto help = nlohmann::json::parse(tree.Run({"disk", "--help", "--formatter=json"}).out);
  EXPECT_EQ(help["result"], tree.Run({"disk", "--help"}).out);
}

TEST(DriverTest, CommandsSuggestAFormatterAndTheUserDecides) {
  DiskTree tree;
  tree.list->SetDefaultOutputFormatter("table");
  tree.list->SetDefaultOutputParameter("fields:Disk", "Name");
  EXPECT_EQ(tree.Run({"disk", "list"}).out, "Name\n----\na\n");
  EXPECT_EQ(tree.Run({"disk", "list", "--formatter=simple"}).out, "Name: a\n");
  EXPECT_EQ(tree.Run({"disk", "list", "--fields=Size"}).out, "Size\n----\n   5\n");
  tree.list->SetDefaultOutputFormatter("nonsense");
  EXPECT_EQ(tree.Run({"disk", "list"}).out, "Name: a\n");
}

TEST(DriverTest, WithoutPluginsThePathIsAnsweredClearly) {
  TextSink out;
  TextSink err;
  EXPECT_EQ(autocli::Run({"autocli", "disk"}, Namespace::New(), {}, out, err), 2);
  EXPECT_THAT(err.text, StartsWith("error: unknown command \"disk\", for no plug-in brought any "
                                   "command\n"));
  EXPECT_EQ(autocli::Run({"autocli", "--help"}, Namespace::New(), {}, out, err), 0);
}

TEST(DriverTest, FailedWritesAreFailures) {
  const DiskTree tree;
  const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
  ASSERT_GE(full, 0);
  FileSink out(full);
  TextSink err;
  EXPECT_EQ(autocli::Run({"autocli", "disk", "list"}, tree.root, {}, out, err), 4);
  EXPECT_EQ(err.text, "error: the output could not be written: No space left on device\n");
  close(full);

  FileSink closed(-1);
  TextSink silent;
  EXPECT_EQ(autocli::Run({"autocli", "disk", "lits"}, tree.root, {}, closed, silent), 2)
      << "there was nothing to write";
}

}  // namespace
}  // namespace autocli::test
