#include <nlohmann/json.hpp>

#include "autocli/render/Formatter.h"
#include "autocli/run/Report.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using Corvex::Declare::ListOf;
using Corvex::Declare::Structure;

std::string Shown(const std::string& formatter, const MetaObjectPtr& result,
                  const Hints& hints = {}, const Words& picked = {}) {
  TextSink out;
  FormatterNamed(formatter).Write(*result, View(*result, hints, picked), out);
  out.Flush();
  return out.text;
}

std::shared_ptr<MetaList> Disks(const std::vector<std::shared_ptr<MetaStruct>>& records) {
  auto disks = ListOf(DiskPrototype());
  for (const auto& record : records) disks->Add(record);
  return disks;
}

TEST(FormatTest, RecordsAreShownAsHintedAndPicked) {
  const auto two = Disks({Disk("sda", 5, true, {"a", "b"}), DiskPrototype()});
  const Hints hints = {{"header:Disk", "Disk %Name% of 100% %No%"},
                       {"fields:Disk", "Size,Name,Gone,Tags,Size"},
                       {"units:Disk.Size", "GB"}};
  EXPECT_EQ(Shown("simple", two, hints),
            "Disk sda of 100% %No%\n   Size: 5 GB\n   Name: sda\n   Tags: a, b\n\n"
            "Disk  of 100% %No%\n   Size:\n   Name:\n   Tags:\n");
  EXPECT_EQ(Shown("simple", Disk("x", -1, false, {})), "Name: x\nSize: -1\nFast: false\nTags:\n");
  EXPECT_EQ(Shown("simple", two, {}, {"Fast"}), "Fast: true\n\nFast:\n");
  EXPECT_EQ(Shown("csv", two, hints, {"Size", "Tags"}), "Size,Tags\n5,\"a, b\"\n,\n");
  EXPECT_EQ(Shown("csv", two, {}, {"Name"}), "Name\nsda\n\"\"\n");
  // A program that reads JSON is not to lose a field by what looks well on a screen.
  EXPECT_EQ(Shown("json", two, hints), R"([{"Name":"sda","Size":5,"Fast":true,"Tags":["a","b"]},)"
                                       R"({"Name":null,"Size":null,"Fast":null,"Tags":[]}])");
  EXPECT_EQ(Shown("json", two, hints, {"Fast", "Name"}),
            R"([{"Fast":true,"Name":"sda"},{"Fast":null,"Name":null}])");
}

TEST(FormatTest, TableColumnsLineUp) {
  const char* const wide = "e\xcc\x81\xe7\x8c\xab";  // a combining mark, a wide cat
  const auto disks =
      Disks({Disk("sda", 5, true, {}), Disk(wide, 12345, false, {"t"}), DiskPrototype()});
  EXPECT_EQ(Shown("table", disks, {{"units:Disk.Size", "GB"}}),
            "Name      Size  Fast   Tags\n"
            "----  --------  -----  ----\n"
            "sda       5 GB  true\n"
            "e\xcc\x81\xe7\x8c\xab   12345 GB  false  t\n"
            "\n");
}

TEST(FormatTest, ATerminalHasItsWidth) {
  const auto record = [](const MetaObjectPtr& speed) {
    const auto disk = MetaStruct::New("Disk");
    disk->SetField("Device Name", "sda");
    disk->SetField("Mounted On", "/");
    disk->SetField("Speed In MB", speed);
    return disk;
  };
  const auto disks = ListOf(record(MetaInt::New()));
  disks->Add(record(MetaInt::New(5)));
  disks->Add(record(MetaInt::New()));
  const View view(*disks, {}, {});
  const std::string table =
      "                 Speed\n"
      "Device  Mounted     In\n"
      "Name    On          MB\n"
      "------  -------  -----\n"
      "sda     /            5\n"
      "sda     /\n";
  const std::string records =
      "Device Name: sda\nMounted On: /\nSpeed In MB: 5\n\nDevice Name: sda\nMounted On: /\n";
  const std::tuple<std::size_t, const char*, bool, std::string> cases[] = {
      {22, "table", true, table},    {21, "table", true, records}, {21, "table", false, table},
      {21, "simple", true, records}, {0, "table", true, table},
  };
  for (const auto& [columns, formatter, isSuggested, shown] : cases) {
    TextSink out;
    TextSink err;
    out.columns = columns;
    Report report;
    report.formatter = formatter;
    report.isSuggested = isSuggested;
    report.result = disks;
    report.view = view;
    WriteReport(report, out, err);
    EXPECT_EQ(out.Buffer(), shown) << columns << formatter << isSuggested;
    EXPECT_EQ(err.Buffer().empty(), formatter + shown != "table" + records);
  }
}

TEST(FormatTest, BareValuesEmptyListsAndNestedRecords) {
  const auto nameless = Structure("T", {{"a", MetaType::Int}, {"", MetaType::Int}});
  const auto outer = MetaStruct::New("Outer");
  outer->SetField("Inner", Disk("a", 1, true, {"\x1b"}));
  const auto rack = MetaStruct::New("Rack");
  rack->SetField("Disks", Disks({Disk("a", 1, true, {"x", "y"})}));
  rack->SetField("None", Disks({}));
  const std::tuple<const char*, MetaObjectPtr, const char*> cases[] = {
      {"simple", MetaBool::New(true), "true\n"},
      {"table", MetaInt::New(INT64_MIN), "-9223372036854775808\n"},
      {"json", MetaInt::New(INT64_MAX), "9223372036854775807"},
      {"table", Texts({"a", "b"}), "a\nb\n"},
      {"csv", Texts({"a", "", "\""}), "a\n\"\"\n\"\"\"\"\n"},
      {"csv", Texts({"a\nb", "\r", "\x1b\xff\xe2\x80\xae"}),
       "\"a\nb\"\n\"\r\"\n\x1b\xff\xe2\x80\xae\n"},
      {"simple", Disks({}), ""},
      {"simple", rack,
       "Disks:\n   Name  Size  Fast  Tags\n   ----  ----  ----  ----\n   a        1  true  x, y\n"
       "None:\n"},
      {"table", Disks({}), "Name  Size  Fast  Tags\n----  ----  ----  ----\n"},
      {"csv", Disks({}), "Name,Size,Fast,Tags\n"},
      {"json", Disks({}), "[]"},
      {"json", MetaStruct::New("Empty"), "{}"},
      {"csv", nameless, "a,\n,\n"},
      {"simple", outer,
       "Inner: {\"Name\":\"a\",\"Size\":1,\"Fast\":true,\"Tags\":[\"\\u001b\"]}\n"},
  };
  for (const auto& [formatter, result, shown] : cases) {
    EXPECT_EQ(Shown(formatter, result), shown) << formatter;
  }
}

TEST(FormatTest, RecordsInARecordAreNoWiderThanTheText) {
  const auto rack = MetaStruct::New("Rack");
  rack->SetField("Disks", Disks({Disk("a disk of some length", 1, true, {}),
                                 Disk("[\"mpx.dkhba0:C0\",[\"e\xcc\x81\xe7\x8c\xab\"]]",
                                      12345678901, false, {"one", "two"}),
                                 DiskPrototype()}));
  setenv("COLUMNS", "45", 1);
  EXPECT_EQ(Shown("simple", rack),
            "Disks:\n"
            "   Name                 Size  Fast   Tags\n"
            "   ------------  -----------  -----  --------\n"
            "   a disk of               1  true\n"
            "   some length\n"
            "   [\"mpx.dkhba0  12345678901  false  one, two\n"
            "   :C0\",\n"
            "   [\"e\xcc\x81\xe7\x8c\xab\"]]\n"
            "\n");
  setenv("COLUMNS", "80", 1);
}

TEST(FormatTest, HostileTextsCannotDriveTheTerminal) {
  const std::pair<std::string, std::string> cases[] = {
      {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
      {"\x1b[31m", "\\x1b[31m"},
      {std::string("\0\x7f", 2), "\\x00\\x7f"},
      {"\xc2\x80\xc2\x9f\xc2\xa0", "\\u0080\\u009f\xc2\xa0"},
      {"\xff\xc3", "\\xff\\xc3"},
      {"\xed\xa0\x80", "\\xed\\xa0\\x80"},           // a surrogate
      {"\xc0\xaf", "\\xc0\\xaf"},                    // overlong
      {"\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},  // beyond Unicode
      {"\xc3\xa9\xf0\x9f\x98\x80", "\xc3\xa9\xf0\x9f\x98\x80"},
      {"\\n \"", "\\n \""},
      {"\xe2\x80\xaegpj.exe", "\\u202egpj.exe"},  // turns the direction
      {"a\xe2\x80\x8b\xe3\x85\xa4", "a\\u200b\\u3164"},
      {"\xf3\xa0\x81\x81", "\\ue0041"},  // a tag
  };
  for (const auto& [text, shown] : cases) {
    EXPECT_EQ(Shown("simple", MetaString::New(text)), shown + "\n");
    EXPECT_EQ(Shown("table", Texts({text})), shown + "\n");
    const std::string json = Shown("json", MetaString::New(text));
    EXPECT_EQ(Shown("simple", MetaString::New(json)), json + "\n") << "JSON is safe as it is";
    EXPECT_TRUE(nlohmann::json::parse(json).is_string());
    TextSink terminal;
    terminal.columns = 80;
    FormatterNamed("csv").Write(*Texts({text + ","}), {}, terminal);
    EXPECT_EQ(terminal.Buffer().find(shown.substr(0, 2)), 1U) << "escaped, and in quotation marks";
  }
  // Eight bytes are looked at in one step, whichever of them is the hostile one.
  for (std::size_t at = 0; at < 8; ++at) {
    for (const char bad : {'\x1f', '\x7f', '\x80'}) {
      std::string text = " ~ ~ ~ ~";
      text[at] = bad;
      EXPECT_THAT(Shown("simple", MetaString::New(text)), testing::HasSubstr("\\x")) << at;
    }
  }
  const auto hostile = Structure("T", {{"a\x1b", MetaType::String}});
  const Hints hints = {{"header:T", "\x1b"}, {"units:T.a\x1b", "\x07"}};
  hostile->SetField("a\x1b", "v\xff");
  EXPECT_EQ(Shown("simple", hostile, hints), "\\x1b\n   a\\x1b: v\\xff \\x07\n");
  EXPECT_EQ(Shown("table", hostile, hints), "a\\x1b\n----------\nv\\xff \\x07\n");
  EXPECT_EQ(Shown("json", hostile, hints), "{\"a\\u001b\":\"v\xef\xbf\xbd\"}");
  EXPECT_EQ(Shown("json", MetaString::New("\x7f\xc2\x80\xc2\x9f\xc2\xa0")),
            "\"\\u007f\\u0080\\u009f\xc2\xa0\"");
}

TEST(FormatTest, LargeResultsGoOutInLargePieces) {
  const auto disks = Disks({20000, Disk("sda", 12345, true, {"tag"})});
  for (const auto& formatter : FormatterNames()) {
    SCOPED_TRACE(formatter);
    TextSink out;
    FormatterNamed(formatter).Write(*disks, View(*disks, {}, {}), out);
    EXPECT_GT(out.text.size(), 300000U) << "waits until the end";
    EXPECT_LT(out.Buffer().size(), 70000U);
    EXPECT_LT(out.pieces, 40);
  }
}

}  // namespace
}  // namespace autocli::test
