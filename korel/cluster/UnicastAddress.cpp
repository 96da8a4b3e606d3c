#include "korel/cluster/UnicastAddress.h"

#include "platform/hostctl/Network.h"

namespace OstrelCli::KorelNamespace {

bool IsIpAddress(const std::string& text) {
  return Tovrin::Network::Ipv4Address::IsValidAddress(text) ||
         Tovrin::Network::Ipv6Address::IsValidAddress(text);
}

std::string InvalidAddress(const std::string& text) { return "Invalid IP address " + text; }

}  // namespace OstrelCli::KorelNamespace
