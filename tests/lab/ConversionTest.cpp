#include <array>
#include <cstdlib>
#include <ctime>

#include "platform/base/Str.h"
#include "platform/base/Uuid.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using testing::MatchesRegex;
using Tovrin::Network::Ipv4Address;
using Tovrin::Network::Ipv6Address;

TEST(ConversionTest, UuidsAreReadInEitherCaseAndWrittenInLower) {
  const auto uuid = KorelUtil::StringToKorelUuid("01234567-89AB-cdef-FEDC-ba9876543210");
  EXPECT_EQ(uuid, (Tovrin::Korel::Uuid{0x0123456789abcdefU, 0xfedcba9876543210U}));
  EXPECT_EQ(KorelUtil::KorelUuidToString(uuid), "01234567-89ab-cdef-fedc-ba9876543210");
  for (const char* text :
       {"", "01234567-89ab-cdef-fedc-ba987654321", "01234567-89ab-cdef-fedc-ba98765432100",
        "0123456789abcdeffedcba9876543210----", "01234567-89ab-cdef-fedc-ba987654321g",
        "{1234567-89ab-cdef-fedc-ba987654321}", "01234567 89ab cdef fedc ba9876543210"}) {
    EXPECT_EQ(Failure([&] { KorelUtil::StringToKorelUuid(text); }), NotUuid(text));
  }
}

TEST(ConversionTest, RandomUuidsAreWellFormedAndDiffer) {
  char* first = UUID_CreateRandom();
  char* second = UUID_CreateRandom();
  EXPECT_THAT(first, MatchesRegex("........-....-4...-[89ab]...-............"));
  EXPECT_STRNE(first, second);
  std::free(first);
  std::free(second);
}

TEST(ConversionTest, PackTextPutsHyphensAndCaseRightWithinItsSize) {
  std::array<char, 37> buffer{};
  for (const char* text : {"0123456789ABCDEFfedcba9876543210", "01-23456789ABCDEFfedcba98765432-10",
                           "01234567-89ab-cdef-fedc-ba9876543210"}) {
    EXPECT_STREQ(UUID_PackText(text, buffer.data(), buffer.size()),
                 "01234567-89ab-cdef-fedc-ba9876543210");
  }
  EXPECT_STREQ(UUID_PackText(buffer.data(), buffer.data(), buffer.size()), buffer.data());
  EXPECT_EQ(UUID_PackText(buffer.data(), buffer.data(), buffer.size() - 1), nullptr);
  for (const char* text :
       {"", "0123456789abcdeffedcba987654321", "x123456789abcdeffedcba9876543210",
        "0123456789abcdeffedcba98765432100"}) {
    EXPECT_EQ(UUID_PackText(text, buffer.data(), buffer.size()), nullptr) << text;
  }
}

TEST(ConversionTest, CharactersAreCountedAndStrayBytesCountOne) {
  const std::pair<std::string, std::size_t> cases[] = {
      {"", 0},
      {"abc", 3},
      {"\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80", 3},
      {std::string("a\0b", 3), 3},
      {"\xff\xfe", 2},
      {"\xe2\x82", 2},           // cut short
      {"\xc0\xaf", 2},           // overlong
      {"\xed\xa0\x80", 3},       // a surrogate
      {"\xf4\x90\x80\x80", 4},   // beyond the last character
      {"\xf0\x8f\xbf\xbf!", 5},  // overlong
  };
  for (const auto& [text, count] : cases) {
    EXPECT_EQ(KorelUtil::UTF8StringCharLength(text), count) << testing::PrintToString(text);
  }
}

TEST(ConversionTest, Ipv4AddressesAreFourPlainNumbers) {
  for (const char* text : {"0.0.0.0", "224.1.2.3", "255.255.255.255"}) {
    EXPECT_EQ(Ipv4Address(text).GetStringAddress(), text);
  }
  for (const std::string& text :
       {std::string(), std::string("1.2.3"), std::string("1.2.3.256"), std::string("01.2.3.4"),
        std::string(" 1.2.3.4"), std::string("1.2.3.4 "), std::string("0x1.2.3.4"),
        std::string("::1"), std::string("1.2.3.4\0", 8)}) {
    EXPECT_FALSE(Ipv4Address::IsValidAddress(text)) << text;
    EXPECT_EQ(Failure([&] { Ipv4Address{text}; }), "'" + text + "' is not an IPv4 address");
  }
  EXPECT_TRUE(Ipv4Address("239.255.255.255").IsMulticast());
  EXPECT_FALSE(Ipv4Address("240.0.0.0").IsMulticast());
}

TEST(ConversionTest, Ipv6AddressesAreWrittenInTheirOneForm) {
  const std::pair<const char*, const char*> cases[] = {
      {"FF19:0:0:0:0:1:2:3", "ff19::1:2:3"},
      {"::", "::"},
      {"0:0:0:0:0:0:0:1", "::1"},
      {"1:0:0:0:0:0:0:0", "1::"},
      {"2001:db8:0:1:1:1:1:1", "2001:db8:0:1:1:1:1:1"},
      {"2001:0:0:1:0:0:0:1", "2001:0:0:1::1"},
      {"2001:db8:0:0:1:0:0:1", "2001:db8::1:0:0:1"},
      {"2001:0DB8::00A1", "2001:db8::a1"},
      {"::ffff:1.2.3.4", "::ffff:1.2.3.4"},
      {"::1.2.3.4", "::102:304"},
      {"::ffff:0:0:0", "::ffff:0:0:0"},
  };
  for (const auto& [text, canonical] : cases) {
    EXPECT_EQ(Ipv6Address(text).GetStringAddress(), canonical) << text;
  }
  for (const char* text : {"", ":::", "1::2::3", "1:2:3:4:5:6:7", "12345::", "fe80::1%eth0",
                           "::1/64", "[::1]", "1.2.3.4", " ::1", "g::"}) {
    EXPECT_FALSE(Ipv6Address::IsValidAddress(text)) << text;
  }
  EXPECT_EQ(Failure([] { Ipv6Address{"x"}; }), "'x' is not an IPv6 address");
  EXPECT_TRUE(Ipv6Address("ff19::1").IsMulticast());
}

TEST(ConversionTest, PolicyClassesKeepTheirNames) {
  for (const auto policyClass : KorelUtil::GetKorelPolicyClasses()) {
    const std::string name = KorelUtil::KorelPolicyClassToString(policyClass);
    EXPECT_EQ(KorelUtil::StringToKorelPolicyClass(name), policyClass);
  }
  EXPECT_EQ(Failure([] { KorelUtil::StringToKorelPolicyClass("VDISK"); }),
            "'VDISK' is no policy class; the classes are cluster, vdisk, vmnamespace, vmswap, "
            "vmem");
}

TEST(ConversionTest, PrintedTextsAreWholeOrAnError) {
  EXPECT_EQ(Tovrin::Misc::StrPrintf("%s-%d", std::string(5000, 'x').c_str(), 7),
            std::string(5000, 'x') + "-7");
  EXPECT_EQ(Tovrin::Misc::StrPrintf("%s", ""), "");
  std::array<char, 4> buffer{};
  EXPECT_EQ(Str_Snprintf(buffer.data(), buffer.size(), "%d", 123), 3);
  EXPECT_EQ(Str_Snprintf(buffer.data(), buffer.size(), "%d", 1234), -1);
  EXPECT_STREQ(buffer.data(), "123");
}

TEST(ConversionTest, QuotedTextsAreCutBetweenCharacters) {
  std::string euros;
  while (euros.size() < 102) euros += "\xe2\x82\xac";
  EXPECT_EQ(Failure([&] { KorelUtil::StringToKorelUuid(euros); }),
            NotUuid(euros.substr(0, 99) + "..."));
}

class TimeTest : public LabTest {};

TEST_F(TimeTest, LocalTimeCarriesItsOffset) {
  setenv("TZ", "XXX-05:30", 1);
  tzset();
  EXPECT_THAT(KorelUtil::GetFormattedSystemDateTime(), MatchesRegex("....-..-..T..:..:..\\+05:30"));
  unsetenv("TZ");
  tzset();
}

}  // namespace
}  // namespace lab_test
