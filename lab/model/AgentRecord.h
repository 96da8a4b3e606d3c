#pragma once

#include <string>

#include "platform/hostctl/KorelInfo.h"

namespace lab {

using Agent = Tovrin::Korel::KorelInfo::KorelUnicastAddressInfo;

/// "node", "witness", "metadata" or "remote"; throws KorelCtlException for any other number.
std::string AgentTypeName(Tovrin::Korel::KorelUnicastAgentType type);

/// The agent with its UUIDs in lower case, its address in the one form of its family, and all zeros
/// for an empty cluster UUID. Throws KorelCtlException unless its UUIDs, type, address, port and
/// thumbprint are well-formed, and the address is one that a host can have: not unspecified, of a
/// group or for all. A thumbprint is 20 bytes of two hexadecimal digits, joined by
/// colons, or empty.
Agent CheckedAgent(Agent agent);

/// The agent as one line:
///   uuid=UUID;type=0;unicast=1;addr=10.0.0.2;port=12321;iface=hsk0;thumbprint=;cluster=UUID
/// Bytes other than letters, digits, points, colons, underscores and hyphens stand as "%3B".
std::string AgentEntry(const Agent& agent);
/// Reads such a line, its keys in any order, each once; the agent is as CheckedAgent returns it.
/// Keys that are not known are refused when `strict`, else left out. Throws KorelCtlException.
Agent ParseAgentEntry(const std::string& text, bool strict);

}  // namespace lab
