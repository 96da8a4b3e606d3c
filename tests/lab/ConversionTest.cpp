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
}

TEST(ConversionTest, AddressesAreReadStrictlyAndWrittenInTheirOneForm) {
  for (const std::string text : {"", "1.2.3", "1.2.3.256", "01.2.3.4", "1.2.3.4 ", "::1"}) {
    EXPECT_EQ(Failure([&] { Ipv4Address{text}; }), "'" + text + "' is not an IPv4 address");
  }
  EXPECT_TRUE(Ipv4Address("239.255.255.255").IsMulticast());
  EXPECT_FALSE(Ipv4Address("240.0.0.0").IsMulticast());
  const std::pair<const char*, const char*> cases[] = {{"1:0:0:0:0:0:0:0", "1::"},
                                                       {"2001:0:0:1:0:0:0:1", "2001:0:0:1::1"},
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
