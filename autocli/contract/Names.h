#pragma once

#include <string_view>

#include "platform/autocli/CallSpec.h"

namespace autocli {

/// An ASCII letter.
bool IsLetter(char c);

/// Letters, digits and hyphens, a letter or a digit first: what a shell takes as it stands and
/// nobody takes for an option.
bool IsPlainWord(std::string_view name);

/// As the type is called in the contract: "String", "Int", "Bool", "Flag", "StringList". Null for a
/// value that is none of them.
const char* TypeName(Corvex::CallSpec::ParameterType type);

}  // namespace autocli
