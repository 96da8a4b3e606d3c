#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace Tovrin::Network {

/// An IPv4 address. The default one is 0.0.0.0.
class Ipv4Address {
 public:
  Ipv4Address() = default;
  /// Parses four decimal numbers of 0 to 255 without leading zeros, joined by points, and nothing
  /// else. Throws KorelCtlException naming the text.
  explicit Ipv4Address(const std::string& text);

  static bool IsValidAddress(const std::string& text);
  std::string GetStringAddress() const;
  /// In 224.0.0.0/4.
  bool IsMulticast() const { return (bytes_[0] & 0xf0U) == 0xe0U; }

 private:
  std::array<std::uint8_t, 4> bytes_{};
};

/// An IPv6 address. The default one is "::".
class Ipv6Address {
 public:
  Ipv6Address() = default;
  /// Parses the text forms of RFC 4291, without a zone or a prefix length. Throws KorelCtlException
  /// naming the text.
  explicit Ipv6Address(const std::string& text);

  static bool IsValidAddress(const std::string& text);
  /// The canonical form of RFC 5952: lower case, no leading zeros, the longest run of zeros as
  /// "::".
  std::string GetStringAddress() const;
  /// In ff00::/8.
  bool IsMulticast() const { return bytes_[0] == 0xffU; }

 private:
  std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace Tovrin::Network
