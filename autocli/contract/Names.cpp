#include "autocli/contract/Names.h"

#include <algorithm>

namespace autocli {

using Corvex::CallSpec::ParameterType;

namespace {

bool IsLetterOrDigit(char c) { return IsLetter(c) || (c >= '0' && c <= '9'); }

}  // namespace

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool IsPlainWord(std::string_view name) {
  return !name.empty() && IsLetterOrDigit(name.front()) &&
         std::ranges::all_of(name, [](char c) { return IsLetterOrDigit(c) || c == '-'; });
}

const char* TypeName(ParameterType type) {
  switch (type) {
    case ParameterType::String:
      return "String";
    case ParameterType::Int:
      return "Int";
    case ParameterType::Bool:
      return "Bool";
    case ParameterType::Flag:
      return "Flag";
    case ParameterType::StringList:
      return "StringList";
  }
  return nullptr;
}

}  // namespace autocli
