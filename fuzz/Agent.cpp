// The text of a unicast agent's entry, read strictly and not.
//
// - Any bytes are read or refused by a KorelCtlException.
// - What is read strictly is read leniently too, as the same agent.
// - What was read is written as one line of printable ASCII, which is read as the same agent, and
//   written as the same line.

#include <algorithm>
#include <optional>
#include <tuple>

#include "fuzz/Support.h"
#include "lab/model/AgentRecord.h"
#include "platform/hostctl/KorelCtlException.h"

namespace {

std::optional<lab::Agent> Read(const std::string& text, bool strict) {
  try {
    return lab::ParseAgentEntry(text, strict);
  } catch (const Tovrin::Lib::Korel::KorelCtlException& failure) {
    fuzz::Require(!failure.GetMessage().empty(), "a refusal says why");
    return std::nullopt;
  }
}

bool IsSame(const lab::Agent& one, const lab::Agent& other) {
  const auto values = [](const lab::Agent& agent) {
    return std::tie(agent.nodeUuid, agent.isWitness, agent.supportsUnicast, agent.address,
                    agent.port, agent.interfaceName, agent.certThumbprint, agent.subClusterUuid);
  };
  return values(one) == values(other);
}

void RequireRoundTrip(const lab::Agent& agent) {
  const std::string entry = lab::AgentEntry(agent);
  fuzz::Require(std::ranges::all_of(entry, [](char c) { return c > ' ' && c < 0x7f; }),
                "an entry is one line of printable ASCII", entry);
  const auto again = Read(entry, true);
  fuzz::Require(again && IsSame(*again, agent), "an entry is read as what was written", entry);
  fuzz::Require(lab::AgentEntry(*again) == entry, "an entry is written the same again", entry);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::AsText(data, size);
  const auto strict = Read(text, true);
  const auto lenient = Read(text, false);
  if (strict) {
    fuzz::Require(lenient && IsSame(*lenient, *strict), "what is read strictly is read leniently");
  }
  if (lenient) RequireRoundTrip(*lenient);
  return 0;
}
