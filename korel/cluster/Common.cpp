#include "korel/cluster/Common.h"

#include "platform/hostctl/Network.h"

namespace OstrelCli::KorelNamespace {

bool IsIpAddress(const std::string& text) {
  return Tovrin::Network::Ipv4Address::IsValidAddress(text) ||
         Tovrin::Network::Ipv6Address::IsValidAddress(text);
}

std::string InvalidAddress(const std::string& text) { return "Invalid IP address " + text; }

std::string JoinWithCommas(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) {
    if (&text != &texts.front()) joined += ",";
    joined += text;
  }
  return joined;
}

}  // namespace OstrelCli::KorelNamespace
