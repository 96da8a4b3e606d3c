#pragma once

#include <string>

#include "lab/memory/TimeOfChange.h"

namespace lab {

/// "isMounted" as "mounted", "claimedAt" as "claimed at", "sizeGb" as "size in GB".
std::string TitleOf(const std::string& column);

/// The value of a column as people know it: a reference as the name of what it refers to, a number
/// that stands for a word as the word, any other as it is.
std::string WordFor(const TimeOfChange& time, const std::string& table, const std::string& column,
                    const std::string& value, Moment moment);

}  // namespace lab
