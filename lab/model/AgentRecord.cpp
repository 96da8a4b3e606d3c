#include "lab/model/AgentRecord.h"

#include <map>

#include "lab/base/Text.h"
#include "lab/conversions/Uuids.h"

namespace lab {
namespace {

using Tovrin::Korel::KorelUnicastAgentType;
using Tovrin::Network::Ipv4Address;
using Tovrin::Network::Ipv6Address;

bool IsOfAHost(const Ipv4Address& address) {
  const std::string text = address.GetStringAddress();
  return !address.IsMulticast() && text != "0.0.0.0" && text != "255.255.255.255";
}

bool IsOfAHost(const Ipv6Address& address) {
  constexpr std::string_view kMapped = "::ffff:";
  const std::string text = address.GetStringAddress();
  const std::string mapped = text.starts_with(kMapped) ? text.substr(kMapped.size()) : "";
  if (Ipv4Address::IsValidAddress(mapped)) return IsOfAHost(Ipv4Address(mapped));
  return !address.IsMulticast() && text != "::";
}

template <typename Address>
std::string TextOf(const Address& address) {
  if (IsOfAHost(address)) return address.GetStringAddress();
  Fail("no host has the address ", address.GetStringAddress(),
       ": it is unspecified, multicast or broadcast");
}

std::string CanonicalAddress(const std::string& text) {
  if (Ipv4Address::IsValidAddress(text)) return TextOf(Ipv4Address(text));
  if (Ipv6Address::IsValidAddress(text)) return TextOf(Ipv6Address(text));
  Fail(Quoted(text), " is neither an IPv4 nor an IPv6 address");
}

void CheckThumbprint(const std::string& text) {
  constexpr std::size_t kLength = 20 * 3 - 1;
  bool isGood = text.empty() || text.size() == kLength;
  for (std::size_t i = 0; isGood && i < text.size(); ++i) {
    isGood = i % 3 == 2 ? text[i] == ':' : HexDigit(text[i]) >= 0;
  }
  if (isGood) return;
  Fail(Quoted(text), " is no SHA-1 thumbprint: 20 bytes of two hexadecimal digits with colons ",
       "between them");
}

std::string Escaped(const std::string& value) {
  return PercentEncoded(value, [](char c) {
    return IsLetterOrDigit(c) || c == '.' || c == ':' || c == '_' || c == '-';
  });
}

std::string Unescaped(const std::string& escaped) {
  std::string value;
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    if (escaped[i] != '%') {
      value += escaped[i];
      continue;
    }
    const int high = i + 2 < escaped.size() ? HexDigit(escaped[i + 1]) : -1;
    const int low = high >= 0 ? HexDigit(escaped[i + 2]) : -1;
    if (low < 0) Fail("no two hexadecimal digits follow the % in ", Quoted(escaped));
    value += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return value;
}

using Values = std::map<std::string, std::string>;

/// The values by their keys, none of which is there twice.
Values ReadPairs(const std::string& text) {
  Values values;
  for (const std::string& pair : Split(text, ';')) {
    const std::size_t equals = pair.find('=');
    if (equals == std::string::npos) Fail(Quoted(pair), " is not of the form key=value");
    const std::string key = pair.substr(0, equals);
    if (!values.emplace(key, Unescaped(pair.substr(equals + 1))).second) {
      Fail("the key ", Quoted(key), " is there twice");
    }
  }
  return values;
}

std::string Take(Values& values, const char* key) {
  const auto found = values.find(key);
  if (found == values.end()) Fail("the key ", Quoted(key), " is missing");
  return values.extract(found).mapped();
}

std::int64_t TakeNumber(Values& values, const char* key, std::int64_t max) {
  const std::string text = Take(values, key);
  const auto number = ParseNumber(text);
  if (!number || *number > max) {
    Fail(key, " must be a number from 0 to ", std::to_string(max), ", got ", Quoted(text));
  }
  return *number;
}

}  // namespace

std::string AgentTypeName(KorelUnicastAgentType type) {
  switch (type) {
    case KorelUnicastAgentType::Node:
      return "node";
    case KorelUnicastAgentType::Witness:
      return "witness";
    case KorelUnicastAgentType::Metadata:
      return "metadata";
    case KorelUnicastAgentType::Remote:
      return "remote";
  }
  Fail("there is no agent type ", std::to_string(static_cast<int>(type)));
}

Agent CheckedAgent(Agent agent) {
  AgentTypeName(agent.isWitness);
  agent.nodeUuid = CanonicalUuid(agent.nodeUuid);
  agent.address = CanonicalAddress(agent.address);
  CheckRange("the port", agent.port, 1, 65535);
  CheckThumbprint(agent.certThumbprint);
  agent.subClusterUuid =
      agent.subClusterUuid.empty() ? std::string(kZeroUuid) : CanonicalUuid(agent.subClusterUuid);
  return agent;
}

std::string AgentEntry(const Agent& agent) {
  const std::pair<const char*, std::string> values[] = {
      {"uuid", agent.nodeUuid},
      {"type", std::to_string(static_cast<int>(agent.isWitness))},
      {"unicast", agent.supportsUnicast ? "1" : "0"},
      {"addr", agent.address},
      {"port", std::to_string(agent.port)},
      {"iface", agent.interfaceName},
      {"thumbprint", agent.certThumbprint},
      {"cluster", agent.subClusterUuid}};
  std::vector<std::string> pairs;
  for (const auto& [key, value] : values) {
    pairs.push_back(Tovrin::Misc::StrCat(key, "=", Escaped(value)));
  }
  return Joined(pairs, ";");
}

Agent ParseAgentEntry(const std::string& text, bool strict) {
  Values values = ReadPairs(text);
  Agent agent;
  agent.nodeUuid = Take(values, "uuid");
  agent.isWitness = static_cast<KorelUnicastAgentType>(TakeNumber(values, "type", 3));
  agent.supportsUnicast = TakeNumber(values, "unicast", 1) == 1;
  agent.address = Take(values, "addr");
  agent.port = TakeNumber(values, "port", 65535);
  agent.interfaceName = Take(values, "iface");
  agent.certThumbprint = Take(values, "thumbprint");
  agent.subClusterUuid = Take(values, "cluster");
  if (strict && !values.empty()) {
    Fail("there is no key ", Quoted(values.begin()->first));
  }
  return CheckedAgent(agent);
}

}  // namespace lab
