#include "autocli/parse/ParseOptions.h"
#include "autocli/parse/Suggest.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using Corvex::Declare::Inputs;
using Corvex::Declare::IntRange;
using Corvex::Declare::StringEnum;
using testing::ElementsAre;

std::shared_ptr<InputSpec> Spec() {
  return Inputs({{.name = "name", .shortName = "n"},
                 {.name = "size", .shortName = "s", .type = ParameterType::Int},
                 {.name = "level", .type = ParameterType::Int, .constraint = IntRange(0, 512)},
                 {.name = "enabled", .shortName = "e", .type = ParameterType::Bool},
                 {.name = "wait", .shortName = "w", .type = ParameterType::Flag},
                 {.name = "test", .shortName = "t", .type = ParameterType::Flag},
                 {.name = "disk", .shortName = "d", .type = ParameterType::StringList},
                 {.name = "mode", .constraint = StringEnum({{"fast", ""}, {"slow", ""}})}});
}

ParsedOptions Parse(const Words& words) { return ParseOptions(*Spec(), words); }

TEST(ParseTest, TextsAreTakenAsTheyStand) {
  const struct {
    Words words;
    const char* name;
  } cases[] = {
      {{"--name", "a b"}, "a b"},
      {{"--name=a"}, "a"},
      {{"--name=a=b"}, "a=b"},
      {{"--name="}, ""},
      {{"--name", ""}, ""},
      {{"-n", "a"}, "a"},
      {{"-na"}, "a"},
      {{"-n=a"}, "=a"},
      {{"-n-t"}, "-t"},
      {{"-wn", "a"}, "a"},
      {{"-wtna"}, "a"},
      {{"--name", "-"}, "-"},
      {{"--name", "-5"}, "-5"},
      {{"--name", "-x"}, "-x"},
      {{"--name", "--unknown"}, "--unknown"},
      {{"--name=--wait"}, "--wait"},
      {{"--name", "-wt"}, "-wt"},
      {{"--name", "\xff\n"}, "\xff\n"},
      {{"--name=--"}, "--"},
      {{"-n", "--nam"}, "--nam"},
  };
  for (const auto& [words, name] : cases) {
    SCOPED_TRACE(testing::PrintToString(words));
    const auto parsed = Parse(words);
    EXPECT_THAT(parsed.faults, testing::IsEmpty());
    EXPECT_TRUE(parsed.input->HasParameter("name"));
    EXPECT_EQ(parsed.input->GetParameter("name"), name);
  }
}

TEST(ParseTest, OtherTypes) {
  const auto parsed = Parse({"-wt", "--size", "-9223372036854775808", "--level=512", "-e", "off",
                             "-db", "--disk", "a", "--disk=", "-d", "b", "--"});
  EXPECT_THAT(parsed.faults, testing::IsEmpty());
  EXPECT_TRUE(parsed.input->IsFlagSet("wait"));
  EXPECT_TRUE(parsed.input->IsFlagSet("test"));
  EXPECT_EQ(parsed.input->GetParameterInt("size"), INT64_MIN);
  EXPECT_EQ(parsed.input->GetParameterInt("level"), 512);
  EXPECT_TRUE(parsed.input->HasParameter("enabled"));
  EXPECT_FALSE(parsed.input->GetParameterBool("enabled"));
  Words disks;
  parsed.input->GetParameterList("disk", disks);
  EXPECT_THAT(disks, ElementsAre("b", "a", "", "b"));
  EXPECT_FALSE(parsed.input->HasParameter("name"));
  for (const char* yes : {"true", "1", "yes", "on"}) {
    EXPECT_TRUE(Parse({"-e", yes}).input->GetParameterBool("enabled")) << yes;
  }
}

TEST(ParseTest, EachFaultHasItsMessage) {
  const struct {
    Words words;
    const char* fault;
  } cases[] = {
      {{"--nmae", "x"}, "unknown option \"--nmae\", did you mean \"--name\"?"},
      {{"--nmae=x"}, "unknown option \"--nmae\", did you mean \"--name\"?"},
      {{"--siez", "-4"}, "unknown option \"--siez\", did you mean \"--size\"?"},
      {{"--elephant"}, "unknown option \"--elephant\""},
      {{"--siz=4"}, "unknown option \"--siz\", did you mean \"--size\"?"},
      {{"-x"}, "unknown option \"-x\""},
      {{"-wx"}, "unknown option \"-x\" in \"-wx\""},
      {{"-\xc3\xa9"}, "unknown option \"-\xc3\xa9\""},
      {{"--name"}, "option \"--name\" needs a value"},
      {{"-n", "--wait"}, "option \"--name\" needs a value"},
      {{"--name", "--size=4"}, "option \"--name\" needs a value"},
      {{"--name", "--"}, "option \"--name\" needs a value"},
      {{"--size", "-w"}, "option \"--size\" needs a value"},
      {{"--wait=x"}, "option \"--wait\" takes no value, not \"x\""},
      {{"--wait="}, "option \"--wait\" takes no value, not \"\""},
      {{"-w=x"}, "option \"-w\" takes no value, not \"x\""},
      {{"--size=4k"}, "option \"--size\" takes a 64-bit decimal integer, not \"4k\""},
      {{"--size="}, "option \"--size\" takes a 64-bit decimal integer, not \"\""},
      {{"--size", "+4"}, "option \"--size\" takes a 64-bit decimal integer, not \"+4\""},
      {{"--size", " 4"}, "option \"--size\" takes a 64-bit decimal integer, not \" 4\""},
      {{"--size", "0x4"}, "option \"--size\" takes a 64-bit decimal integer, not \"0x4\""},
      {{"--size", "9223372036854775808"},
       "option \"--size\" takes a 64-bit decimal integer, not \"9223372036854775808\""},
      {{"--level", "-1"}, "option \"--level\" takes 0 to 512, not \"-1\""},
      {{"--level", "513"}, "option \"--level\" takes 0 to 512, not \"513\""},
      {{"-e", "True"}, "option \"--enabled\" takes true or false, not \"True\""},
      {{"--mode", "fats"},
       "option \"--mode\" takes one of \"fast\", \"slow\", not \"fats\", did you mean \"fast\"?"},
      {{"--mode="}, "option \"--mode\" takes one of \"fast\", \"slow\", not \"\""},
      {{"--name", "a", "-nb", "-nc"}, "option \"--name\" is given more than once"},
      {{"-ww"}, "option \"--wait\" is given more than once"},
      {{"word"}, "unexpected argument \"word\""},
      {{"-w", "-"}, "unexpected argument \"-\""},
      {{"--", "--wait"}, "unexpected argument \"--wait\""},
  };
  for (const auto& [words, fault] : cases) {
    SCOPED_TRACE(testing::PrintToString(words));
    EXPECT_THAT(Parse(words).faults, ElementsAre(fault));
  }
}

TEST(ParseTest, AllFaultsComeAtOnce) {
  const auto spec = Inputs({{.name = "uuid", .shortName = "u", .required = true},
                            {.name = "port", .type = ParameterType::Int, .required = true},
                            {.name = "name", .required = true}});
  EXPECT_THAT(
      ParseOptions(*spec, {"-x", "word", "--port", "many", "--name"}).faults,
      ElementsAre("unknown option \"-x\"", "unexpected argument \"word\"",
                  "option \"--port\" takes a 64-bit decimal integer, not \"many\"",
                  "option \"--name\" needs a value", "required option \"--uuid\" is missing"));
}

TEST(ParseTest, DistancesCountASwapOnce) {
  const struct {
    const char* a;
    const char* b;
    std::size_t distance;
  } cases[] = {{"", "", 0},      {"", "abc", 3},  {"list", "lsit", 1},     {"list", "lst", 1},
               {"ca", "abc", 3}, {"ab", "ba", 1}, {"kitten", "sitting", 3}};
  for (const auto& [a, b, distance] : cases) {
    EXPECT_EQ(EditDistance(a, b), distance) << a << " " << b;
    EXPECT_EQ(EditDistance(b, a), distance) << b << " " << a;
  }
}

TEST(ParseTest, OnlySlipsAreSuggested) {
  const Words names = {"list", "add", "remove", "get"};
  EXPECT_EQ(Closest("lsit", names), "list");
  EXPECT_EQ(Closest("remvoe", names), "remove");
  EXPECT_EQ(Closest("set", names), "get");
  EXPECT_EQ(Closest("", names), "");
  EXPECT_EQ(Closest("x", {"a"}), "") << "nothing in common";
  EXPECT_EQ(Closest(std::string(1000000, 'x'), names), "");
}

}  // namespace
}  // namespace autocli::test
