#include "autocli/line/ParseOptions.h"
#include "platform/autocli/Suggest.h"
#include "tests/autocli/Support.h"

namespace autocli::test {
namespace {

using Corvex::Declare::Inputs;
using Corvex::Declare::IntRange;
using Corvex::Declare::StringEnum;
using testing::ElementsAre;

ParsedOptions Parse(const Words& words) {
  const auto spec = Inputs({
      {.name = "name", .shortName = "n"},
      {.name = "size", .shortName = "s", .type = ParameterType::Int},
      {.name = "level", .type = ParameterType::Int, .constraint = IntRange(0, 512)},
      {.name = "enabled", .shortName = "e", .type = ParameterType::Bool},
      {.name = "wait", .shortName = "w", .type = ParameterType::Flag},
      {.name = "test", .shortName = "t", .type = ParameterType::Flag},
      {.name = "disk", .shortName = "d", .type = ParameterType::StringList},
      {.name = "mode", .constraint = StringEnum({{"fast", ""}, {"slow", ""}})},
  });
  return ParseOptions(*spec, words);
}

/// What is told of a line is the name, or the only fault.
TEST(ParseTest, NamesAreTakenAsTheyStandAndEachFaultHasItsMessage) {
  const std::pair<Words, const char*> cases[] = {
      {{"--name=a=b"}, "a=b"},
      {{"--name", ""}, ""},
      {{"-n-5"}, "-5"},
      {{"-wtna"}, "a"},
      {{"--name", "-"}, "-"},
      {{"--name", "-5"}, "-5"},
      {{"--name", "-x"}, "-x"},
      {{"--name", "--unknown"}, "--unknown"},
      {{"--name=--wait"}, "--wait"},
      {{"--name", "-wt"}, "-wt"},
      {{"--name", "\xff\n"}, "\xff\n"},
      {{"--nmae", "x"}, "unknown option \"--nmae\", did you mean \"--name\"?"},
      {{"--nam=x"}, "unknown option \"--nam\", did you mean \"--name\"?"},
      {{"--siez", "-4"}, "unknown option \"--siez\", did you mean \"--size\"?"},
      {{"-nmae"}, "mae"},
      {{"-nam=x"}, "am=x"},
      {{"-name", "x"}, "unknown option \"-name\", did you mean \"--name\"?"},
      {{"-size=4"}, "unknown option \"-size\", did you mean \"--size\"?"},
      {{"-wait"}, "unknown option \"-wait\", did you mean \"--wait\"?"},
      {{"-mdoe=x"}, "unknown option \"-mdoe\", did you mean \"--mode\"?"},
      {{"-x"}, "unknown option \"-x\""},
      {{"-wx"}, "unknown option \"-x\" in \"-wx\""},
      {{"-\xc3\xa9"}, "unknown option \"-\xc3\xa9\""},
      {{"--name"}, "option \"--name\" needs a value"},
      {{"-n", "--wait"}, "option \"--name\" needs a value"},
      {{"--name", "--size=4"}, "option \"--name\" needs a value"},
      {{"--name", "--"}, "option \"--name\" needs a value"},
      {{"--size", "-w"}, "option \"--size\" needs a value"},
      {{"--wait="}, "option \"--wait\" takes no value, not \"\""},
      {{"-s=4"}, "option \"-s\" takes its value without \"=\": \"-s 4\" or \"-s4\""},
      {{"-wn="}, "option \"-n\" takes its value without \"=\": \"-n VALUE\" or \"-nVALUE\""},
      {{"-w=x"}, "option \"-w\" takes no value, not \"x\""},
      {{"--size=4k"}, "option \"--size\" takes a 64-bit decimal integer, not \"4k\""},
      {{"--size", "9223372036854775808"},
       "option \"--size\" takes a 64-bit decimal integer, not \"9223372036854775808\""},
      {{"--level", "-1"}, "option \"--level\" takes 0 to 512, not \"-1\""},
      {{"--level", "513"}, "option \"--level\" takes 0 to 512, not \"513\""},
      {{"-e", "TRUE"},
       "option \"--enabled\" takes true (1, yes, on) or false (0, no, off), not \"TRUE\", did you "
       "mean \"true\"?"},
      {{"-e", "2"},
       "option \"--enabled\" takes true (1, yes, on) or false (0, no, off), not \"2\""},
      {{"--mode", "fats"},
       "option \"--mode\" takes one of \"fast\", \"slow\", not \"fats\", did you mean \"fast\"?"},
      {{"--name", "a", "-nb", "-nc"}, "option \"--name\" is given more than once"},
      {{"-ww"}, "option \"--wait\" is given more than once"},
      {{"-w", "-"}, "unexpected argument \"-\""},
      {{"--", "--wait"}, "unexpected argument \"--wait\""},
  };
  for (const auto& [words, told] : cases) {
    const auto [input, faults] = Parse(words);
    EXPECT_LE(faults.size(), 1U) << told;
    EXPECT_EQ(faults.empty() ? input->GetParameter("name") : faults[0], told);
  }
}

TEST(ParseTest, OtherTypes) {
  const auto parsed = Parse({"-wt", "--size", "-9223372036854775808", "--level=512", "-e", "off",
                             "-db", "--disk", "a", "--disk=", "-d", "b", "--"});
  EXPECT_THAT(parsed.faults, testing::IsEmpty());
  EXPECT_TRUE(parsed.input->IsFlagSet("wait") && parsed.input->IsFlagSet("test"));
  EXPECT_EQ(parsed.input->GetParameterInt("size"), INT64_MIN);
  EXPECT_EQ(parsed.input->GetParameterInt("level"), 512);
  EXPECT_TRUE(parsed.input->HasParameter("enabled") && !parsed.input->GetParameterBool("enabled"));
  Words disks;
  parsed.input->GetParameterList("disk", disks);
  EXPECT_THAT(disks, ElementsAre("b", "a", "", "b"));
  EXPECT_FALSE(parsed.input->HasParameter("name"));
  EXPECT_FALSE(parsed.input->HasParameter("none") || parsed.input->IsFlagSet("none"));
  // A slip of the command's author shows at once, not when somebody gives the option.
  const auto& input = *parsed.input;
  EXPECT_THROW(input.GetParameter("none"), std::logic_error);
  EXPECT_THROW(input.GetParameter("size"), std::logic_error);
  EXPECT_THROW(input.GetParameterInt("name"), std::logic_error);
  EXPECT_THROW(input.GetParameterBool("wait"), std::logic_error);
  EXPECT_THROW(input.GetParameterList("mode", disks), std::logic_error);
  EXPECT_THROW(input.IsFlagSet("enabled"), std::logic_error);
  const auto isOn = [](const char* word) {
    return Parse({"-e", word}).input->GetParameterBool("enabled");
  };
  for (const char* yes : {"true", "1", "yes", "on"}) EXPECT_TRUE(isOn(yes)) << yes;
  for (const char* no : {"false", "0", "no", "off"}) EXPECT_FALSE(isOn(no)) << no;
}

TEST(ParseTest, OnlySlipsAreSuggested) {
  const Words names = {"list", "add", "remove", "get"};
  EXPECT_EQ(Corvex::Suggest::Closest("gte", names), "get") << "a swap is one slip";
  EXPECT_EQ(Corvex::Suggest::Closest("rmovee", names), "remove")
      << "two slips in a word of six letters";
  EXPECT_EQ(Corvex::Suggest::Closest("ls", names), "") << "two slips in a word of two";
  EXPECT_EQ(Corvex::Suggest::Closest("x", {"a"}), "") << "nothing in common";
  EXPECT_EQ(Corvex::Suggest::Closest("LSIT", names), "list") << "capitals are no slip";
  EXPECT_EQ(Corvex::Suggest::Closest(std::string(1000000, 'x'), names), "");
}

}  // namespace
}  // namespace autocli::test
