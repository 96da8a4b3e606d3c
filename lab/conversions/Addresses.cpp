#include <arpa/inet.h>

#include "lab/base/Text.h"
#include "platform/hostctl/Network.h"

namespace Tovrin::Network {
namespace {

// A NUL in the text would end it for inet_pton only.
template <typename Bytes>
bool Parse(int family, const std::string& text, Bytes& bytes) {
  return text.find('\0') == std::string::npos && inet_pton(family, text.c_str(), bytes.data()) == 1;
}

/// The longest run of at least two groups of zeros, the first of several; `size` 0 when there is
/// none.
struct ZeroRun {
  std::size_t start = 0;
  std::size_t size = 0;
};

ZeroRun LongestZeroRun(const std::array<unsigned, 8>& groups) {
  ZeroRun longest;
  for (std::size_t start = 0; start < groups.size(); ++start) {
    std::size_t end = start;
    while (end < groups.size() && groups[end] == 0) ++end;
    if (end - start >= 2 && end - start > longest.size) longest = {start, end - start};
  }
  return longest;
}

/// Four bytes as an IPv4 address has them.
std::string Dotted(const std::uint8_t* bytes) {
  return Misc::StrPrintf("%d.%d.%d.%d", bytes[0], bytes[1], bytes[2], bytes[3]);
}

}  // namespace

Ipv4Address::Ipv4Address(const std::string& text) {
  if (!Parse(AF_INET, text, bytes_)) lab::Fail(lab::Quoted(text), " is not an IPv4 address");
}

bool Ipv4Address::IsValidAddress(const std::string& text) {
  std::array<std::uint8_t, 4> bytes{};
  return Parse(AF_INET, text, bytes);
}

std::string Ipv4Address::GetStringAddress() const { return Dotted(bytes_.data()); }

Ipv6Address::Ipv6Address(const std::string& text) {
  if (!Parse(AF_INET6, text, bytes_)) lab::Fail(lab::Quoted(text), " is not an IPv6 address");
}

bool Ipv6Address::IsValidAddress(const std::string& text) {
  std::array<std::uint8_t, 16> bytes{};
  return Parse(AF_INET6, text, bytes);
}

// inet_ntop writes some addresses with an IPv4 tail, and not all of these are to have one.
std::string Ipv6Address::GetStringAddress() const {
  std::array<unsigned, 8> groups{};
  for (std::size_t i = 0; i < groups.size(); ++i) {
    groups[i] = static_cast<unsigned>(bytes_[2 * i]) << 8U | bytes_[2 * i + 1];
  }
  const bool isMapped =
      groups[5] == 0xffff && LongestZeroRun(groups).size >= 5 && LongestZeroRun(groups).start == 0;
  if (isMapped) return "::ffff:" + Dotted(bytes_.data() + 12);
  const ZeroRun zeros = LongestZeroRun(groups);
  std::string text;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    if (zeros.size > 0 && i == zeros.start) {
      text += "::";
      i += zeros.size - 1;
      continue;
    }
    if (!text.empty() && text.back() != ':') text += ':';
    text += Misc::StrPrintf("%x", groups[i]);
  }
  return text;
}

}  // namespace Tovrin::Network
