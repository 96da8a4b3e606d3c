#include <array>

#include "platform/base/Uuid.h"
#include "tests/lab/Support.h"

namespace lab_test {
namespace {

using HskCtl::Korel::KorelUtil;
using Tovrin::Network::Ipv4Address;
using Tovrin::Network::Ipv6Address;

TEST(ConversionTest, UuidsAreReadInEitherCaseAndWrittenInLower) {
  const auto uuid = KorelUtil::StringToKorelUuid("01234567-89AB-cdef-FEDC-ba9876543210");
  EXPECT_EQ(uuid, (Tovrin::Korel::Uuid{0x0123456789abcdefU, 0xfedcba9876543210U}));
  EXPECT_EQ(KorelUtil::KorelUuidToString(uuid), "01234567-89ab-cdef-fedc-ba9876543210");
  for (const char* text :
       {"", "01234567-89ab-cdef-fedc-ba98765432100", "0123456789abcdeffedcba9876543210----",
        "01234567-89ab-cdef-fedc-ba987654321g"}) {
    EXPECT_EQ(Failure([&] { KorelUtil::StringToKorelUuid(text); }), NotUuid(text));
  }
  std::string euros;
  while (euros.size() < 102) euros += "\xe2\x82\xac";
  EXPECT_EQ(Failure([&] { KorelUtil::StringToKorelUuid(euros); }),
            NotUuid(euros.substr(0, 99) + "..."));
}

TEST(ConversionTest, PackTextPutsHyphensAndCaseRightWithinItsSize) {
  std::array<char, 37> buffer{};
  char* packed = buffer.data();
  EXPECT_STREQ(UUID_PackText("01-23456789ABCDEFfedcba98765432-10", packed, buffer.size()),
               "01234567-89ab-cdef-fedc-ba9876543210");
  EXPECT_STREQ(UUID_PackText(packed, packed, buffer.size()), packed);
  EXPECT_EQ(UUID_PackText(packed, packed, buffer.size() - 1), nullptr);
  for (const char* text : {"0123456789abcdeffedcba987654321", "x123456789abcdeffedcba9876543210"}) {
    EXPECT_EQ(UUID_PackText(text, packed, buffer.size()), nullptr) << text;
  }
}

TEST(ConversionTest, StrayBytesCountAsOneCharacterEach) {
  // Whole characters, one cut short, one overlong, a surrogate, one beyond the last.
  const std::pair<std::string, std::size_t> cases[] = {{"\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80", 3},
                                                       {"\xe2\x82", 2},
                                                       {"\xc0\xaf", 2},
                                                       {"\xed\xa0\x80", 3},
                                                       {"\xf4\x90\x80\x80", 4},
                                                       {"", 0}};
  for (const auto& [text, count] : cases) {
    EXPECT_EQ(KorelUtil::UTF8StringCharLength(text), count) << testing::PrintToString(text);
  }
}

TEST(ConversionTest, AddressesAreReadStrictlyAndWrittenInTheirOneForm) {
  for (const std::string text : {"", "1.2.3", "1.2.3.256", "01.2.3.4", "1.2.3.4 ", "::1"}) {
    EXPECT_EQ(Failure([&] { Ipv4Address{text}; }), "'" + text + "' is not an IPv4 address");
  }
  EXPECT_TRUE(Ipv4Address("239.255.255.255").IsMulticast());
  EXPECT_FALSE(Ipv4Address("240.0.0.0").IsMulticast());
  const std::pair<const char*, const char*> cases[] = {
      {"FF19:0:0:0:0:1:2:3", "ff19::1:2:3"},
      {"1:0:0:0:0:0:0:0", "1::"},
      {"2001:0:0:1:0:0:0:1", "2001:0:0:1::1"},
      {"2001:db8:0:1:1:1:1:1", "2001:db8:0:1:1:1:1:1"},
      {"2001:db8:0:0:1:0:0:1", "2001:db8::1:0:0:1"},
      {"::ffff:1.2.3.4", "::ffff:1.2.3.4"}};
  for (const auto& [text, canonical] : cases) {
    EXPECT_EQ(Ipv6Address(text).GetStringAddress(), canonical) << text;
  }
  for (const std::string text : {"", ":::", "1::2::3", "12345::", "fe80::1%eth0", "1.2.3.4"}) {
    EXPECT_EQ(Failure([&] { Ipv6Address{text}; }), "'" + text + "' is not an IPv6 address");
  }
}

}  // namespace
}  // namespace lab_test
