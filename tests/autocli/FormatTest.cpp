#include <nlohmann/json.hpp>
#include <random>

#include "autocli/format/Formatter.h"
#include "autocli/format/JsonText.h"
#include "autocli/text/Escape.h"
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

std::shared_ptr<MetaList> TwoDisks() {
  auto disks = ListOf(DiskPrototype());
  disks->Add(Disk("sda", 5, true, {"a", "b"}));
  disks->Add(DiskPrototype());
  return disks;
}

std::shared_ptr<MetaList> Texts(const Words& texts) {
  auto list = MetaList::New(MetaType::String);
  for (const auto& text : texts) list->Add(text);
  return list;
}

TEST(FormatTest, SimpleRecords) {
  const Hints hints = {{"header:Disk", "Disk %Name% of 100% %No%"},
                       {"fields:Disk", "Size,Name,Gone,Tags"},
                       {"units:Disk.Size", "GB"}};
  EXPECT_EQ(Shown("simple", TwoDisks(), hints),
            "Disk sda of 100% %No%\n   Size: 5 GB\n   Name: sda\n   Tags: a, b\n\n"
            "Disk  of 100% %No%\n   Size:\n   Name:\n   Tags:\n");
  EXPECT_EQ(Shown("simple", Disk("x", -1, false, {})), "Name: x\nSize: -1\nFast: false\nTags:\n");
  EXPECT_EQ(Shown("simple", TwoDisks(), {}, {"Fast"}), "Fast: true\n\nFast:\n");
}

TEST(FormatTest, TableColumnsLineUp) {
  auto disks = ListOf(DiskPrototype());
  disks->Add(Disk("sda", 5, true, {}));
  disks->Add(Disk("e\xcc\x81\xe7\x8c\xab", 12345, false, {"t"}));  // a combining mark, a wide cat
  disks->Add(DiskPrototype());
  EXPECT_EQ(Shown("table", disks, {{"units:Disk.Size", "GB"}}),
            "Name      Size  Fast   Tags\n"
            "----  --------  -----  ----\n"
            "sda       5 GB  true\n"
            "e\xcc\x81\xe7\x8c\xab   12345 GB  false  t\n"
            "\n");
}

TEST(FormatTest, CsvQuotesWhatNeedsIt) {
  auto disks = ListOf(DiskPrototype());
  disks->Add(Disk("a \"b\"", 5, true, {"x", "y,z"}));
  EXPECT_EQ(Shown("csv", disks, {{"units:Disk.Size", "GB"}}),
            "Name,Size,Fast,Tags\n\"a \"\"b\"\"\",5,true,\"x, y,z\"\n");
  EXPECT_EQ(Shown("csv", TwoDisks(), {}, {"Tags", "Name"}), "Tags,Name\n\"a, b\",sda\n,\n");
  EXPECT_EQ(Shown("csv", TwoDisks(), {}, {"Name"}), "Name\nsda\n\"\"\n");
}

TEST(FormatTest, JsonCarriesAllFieldsUnlessSomeArePicked) {
  const Hints hints = {{"fields:Disk", "Size"}};
  EXPECT_EQ(Shown("json", TwoDisks(), hints),
            R"([{"Name":"sda","Size":5,"Fast":true,"Tags":["a","b"]},)"
            R"({"Name":null,"Size":null,"Fast":null,"Tags":[]}])");
  EXPECT_EQ(Shown("json", TwoDisks(), hints, {"Fast", "Name"}),
            R"([{"Fast":true,"Name":"sda"},{"Fast":null,"Name":null}])");
  EXPECT_EQ(Shown("json", MetaStruct::New("Empty")), "{}");
}

TEST(FormatTest, BareValuesAndEmptyLists) {
  const auto empty = ListOf(DiskPrototype());
  const struct {
    const char* formatter;
    MetaObjectPtr result;
    const char* shown;
  } cases[] = {
      {"simple", MetaBool::New(true), "true\n"},
      {"table", MetaInt::New(INT64_MIN), "-9223372036854775808\n"},
      {"csv", MetaString::New("a,b"), "\"a,b\"\n"},
      {"json", MetaInt::New(INT64_MAX), "9223372036854775807"},
      {"json", MetaBool::New(), "null"},
      {"simple", MetaString::New(), "\n"},
      {"simple", Texts({"a", "b"}), "a\nb\n"},
      {"table", Texts({"a", "b"}), "a\nb\n"},
      {"csv", Texts({"a", "", "\""}), "a\n\"\"\n\"\"\"\"\n"},
      {"json", Texts({"a", "\""}), R"(["a","\""])"},
      {"simple", empty, ""},
      {"table", empty, "Name  Size  Fast  Tags\n----  ----  ----  ----\n"},
      {"csv", empty, "Name,Size,Fast,Tags\n"},
      {"json", empty, "[]"},
      {"json", Texts({}), "[]"},
      {"simple", Texts({}), ""},
  };
  for (const auto& [formatter, result, shown] : cases) {
    EXPECT_EQ(Shown(formatter, result), shown) << formatter;
  }
}

TEST(FormatTest, HostileTextsCannotDriveTheTerminal) {
  const struct {
    std::string text;
    std::string shown;
  } cases[] = {
      {"a\nb\tc\rd", "a\\nb\\tc\\rd"},
      {"\x1b[31m", "\\x1b[31m"},
      {std::string("\0", 1), "\\x00"},
      {"\x7f", "\\x7f"},
      {"\xc2\x9b"
       "2J",
       "\\u009b2J"},
      {"\xff\xfe", "\\xff\\xfe"},
      {"\xc3", "\\xc3"},
      {"\xed\xa0\x80", "\\xed\\xa0\\x80"},           // a surrogate
      {"\xc0\xaf", "\\xc0\\xaf"},                    // overlong
      {"\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},  // beyond Unicode
      {"\xc3\xa9\xf0\x9f\x98\x80", "\xc3\xa9\xf0\x9f\x98\x80"},
      {"\\n \"", "\\n \""},
  };
  for (const auto& [text, shown] : cases) {
    SCOPED_TRACE(shown);
    EXPECT_EQ(Shown("simple", MetaString::New(text)), shown + "\n");
    EXPECT_EQ(Shown("table", Texts({text})), shown + "\n");
    EXPECT_THAT(Shown("json", MetaString::New(text)), testing::Not(testing::HasSubstr("\x1b")));
  }
  const auto hostile = Structure("T", {{"a\x1b", MetaType::String}});
  const Hints hints = {{"header:T", "\x1b"}, {"units:T.a\x1b", "\x07"}};
  hostile->SetField("a\x1b", "v");
  EXPECT_EQ(Shown("simple", hostile, hints), "\\x1b\n   a\\x1b: v \\x07\n");
  EXPECT_EQ(Shown("table", hostile, hints), "a\\x1b\n------\nv \\x07\n");
  EXPECT_EQ(Shown("json", MetaString::New("a\xff"
                                          "b")),
            "\"a\xef\xbf\xbd"
            "b\"");
}

TEST(FormatTest, NestedRecordsAreStillShown) {
  const auto outer = MetaStruct::New("Outer");
  outer->SetField("Inner", Disk("a", 1, true, {"\x1b"}));
  EXPECT_EQ(Shown("simple", outer),
            "Inner: {\"Name\":\"a\",\"Size\":1,\"Fast\":true,\"Tags\":[\"\\u001b\"]}\n");
}

TEST(FormatTest, JsonReadsBackWhateverTheBytes) {
  const auto seed = std::random_device()();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 random(seed);
  for (int round = 0; round < 2000; ++round) {
    std::string text(random() % 12, '\0');
    for (char& c : text) c = static_cast<char>(random() % (round % 2 == 0 ? 0x80 : 0x100));
    std::string json;
    AppendJsonString(json, text);
    const auto read = nlohmann::json::parse(json, nullptr, false);
    ASSERT_TRUE(read.is_string()) << json;
    if (round % 2 == 0) {
      ASSERT_EQ(read.get<std::string>(), text);
    }
    // What was made safe for a terminal needs nothing more, and can be measured.
    const std::string escaped = Escaped(text);
    ASSERT_EQ(Escaped(escaped), escaped);
    ASSERT_LE(CellWidth(escaped), escaped.size());
  }
}

TEST(FormatTest, LargeResultsGoOutInLargePieces) {
  auto disks = ListOf(DiskPrototype());
  for (int i = 0; i < 20000; ++i) disks->Add(Disk("sda", i, true, {"tag"}));
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
