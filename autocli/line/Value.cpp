#include "autocli/line/Value.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <vector>

#include "autocli/line/Suggest.h"

namespace autocli {

using Corvex::CallSpec::ParameterConstraint;
using Corvex::CallSpec::ParameterConstraintType;
using Corvex::CallSpec::ParameterSpec;
using Corvex::CallSpec::ParameterType;

std::optional<std::int64_t> ReadInteger(std::string_view text) {
  std::int64_t value = 0;
  const char* end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || rest != end) return std::nullopt;
  return value;
}

namespace {

ReadResult Refused(const ParameterSpec& parameter, const std::string& expected,
                   const std::string& text, const std::string& hint = "") {
  return {{},
          fmt::format("option \"--{}\" takes {}, not \"{}\"{}", parameter.GetLongName(), expected,
                      text, hint)};
}

const ParameterConstraint* ConstraintOf(const ParameterSpec& parameter,
                                        ParameterConstraintType type) {
  const ParameterConstraint* constraint = parameter.GetConstraint().get();
  return constraint != nullptr && constraint->GetType() == type ? constraint : nullptr;
}

ReadResult ReadInt(const ParameterSpec& parameter, const std::string& text) {
  const auto value = ReadInteger(text);
  if (!value) return Refused(parameter, "a 64-bit decimal integer", text);
  const auto* range = ConstraintOf(parameter, ParameterConstraintType::IntRange);
  if (range != nullptr && (*value < range->GetMin() || *value > range->GetMax())) {
    return Refused(parameter, fmt::format("{} to {}", range->GetMin(), range->GetMax()), text);
  }
  return {*value, ""};
}

ReadResult ReadBool(const ParameterSpec& parameter, const std::string& text) {
  const std::vector<std::string> words = {"true", "1", "yes", "on", "false", "0", "no", "off"};
  const auto word = std::ranges::find(words, text);
  if (word != words.end()) return {word < words.begin() + 4, ""};
  return Refused(parameter, "true (1, yes, on) or false (0, no, off)", text,
                 DidYouMean(text, words));
}

ReadResult ReadText(const ParameterSpec& parameter, const std::string& text) {
  const auto* allowed = ConstraintOf(parameter, ParameterConstraintType::StringEnum);
  if (allowed == nullptr) return {text, ""};
  std::string quoted;
  std::vector<std::string> values;
  for (const auto& [value, description] : allowed->GetValues()) {
    if (value == text) return {text, ""};
    quoted += fmt::format("{}\"{}\"", quoted.empty() ? "" : ", ", value);
    values.push_back(value);
  }
  return Refused(parameter, "one of " + quoted, text, DidYouMean(text, values));
}

}  // namespace

ReadResult ReadValueOf(const ParameterSpec& parameter, const std::string& text) {
  switch (parameter.GetType()) {
    case ParameterType::Int:
      return ReadInt(parameter, text);
    case ParameterType::Bool:
      return ReadBool(parameter, text);
    case ParameterType::String:
    case ParameterType::StringList:
      return ReadText(parameter, text);
    case ParameterType::Flag:
      break;
  }
  return {{}, fmt::format("option \"--{}\" takes no value", parameter.GetLongName())};
}

}  // namespace autocli
