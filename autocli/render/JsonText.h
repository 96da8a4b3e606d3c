#pragma once

#include <string>
#include <string_view>

#include "platform/autocli/MetaObj.h"

namespace autocli {

/// Appends `text` as a JSON string, control characters as escapes; bytes that are no valid UTF-8
/// become U+FFFD.
void AppendJsonString(std::string& out, std::string_view text);

/// Appends the value as JSON, records with all their fields in order; unset values are null.
void AppendJson(std::string& out, const Corvex::MetaObj::MetaObject& value);

}  // namespace autocli
