#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace lab {

/// A key of a policy value, whose own value is a number; without a range, "on" or "off".
struct PolicyKey {
  const char* name;
  std::int64_t min = 0;
  std::int64_t max = 0;

  bool IsSwitch() const { return max == 0; }
};

inline constexpr std::array<PolicyKey, 4> kPolicyKeys{
    {{"copies", 1, 4}, {"stripes", 1, 12}, {"reserved-percent", 0, 100}, {"checksum"}}};

/// Each key with what it takes: "copies (1 to 4)".
std::vector<std::string> PolicyKeyTexts();

}  // namespace lab
