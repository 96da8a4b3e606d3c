#include "autocli/help/Placeholders.h"

#include <fmt/format.h>

#include <string_view>

namespace autocli {

using Corvex::CallSpec::ParameterConstraint;
using Corvex::CallSpec::ParameterConstraintType;
using Corvex::CallSpec::ParameterSpec;

namespace {

constexpr std::string_view kShort = "%ENUM%";
constexpr std::string_view kFull = "%FULLENUM%";

}  // namespace

std::string AllowedValues(const ParameterSpec& parameter) {
  const ParameterConstraint* constraint = parameter.GetConstraint().get();
  if (constraint == nullptr) return "";
  switch (constraint->GetType()) {
    case ParameterConstraintType::IntRange:
      return fmt::format("{}{}{}", constraint->GetMin(), constraint->GetMin() < 0 ? " to " : "-",
                         constraint->GetMax());
    case ParameterConstraintType::StringEnum:
      break;
  }
  std::string joined;
  for (const auto& [value, description] : constraint->GetValues()) {
    if (!joined.empty()) joined += ", ";
    joined += value;
  }
  return joined;
}

std::string DescribedValues(const ParameterSpec& parameter) {
  const ParameterConstraint* constraint = parameter.GetConstraint().get();
  if (constraint == nullptr) return "";
  if (constraint->GetType() == ParameterConstraintType::IntRange) {
    return AllowedValues(parameter) + "\n";
  }
  std::string lines;
  for (const auto& [value, description] : constraint->GetValues()) {
    lines += description.empty() ? fmt::format("  {}\n", value)
                                 : fmt::format("  {}: {}\n", value, description);
  }
  return lines;
}

std::string ExpandedDescription(const ParameterSpec& parameter) {
  const std::string_view text = parameter.GetDescription();
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    if (text.substr(at).starts_with(kShort)) {
      out += AllowedValues(parameter);
      at += kShort.size();
    } else if (text.substr(at).starts_with(kFull)) {
      // Each value has a line of its own, the first one too.
      while (out.ends_with(' ')) out.pop_back();
      if (!out.empty() && !out.ends_with('\n')) out += '\n';
      out += DescribedValues(parameter);
      at += kFull.size();
    } else {
      out += text[at++];
    }
  }
  return out;
}

}  // namespace autocli
