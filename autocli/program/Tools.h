#pragma once

#include <span>

#include "autocli/line/Vocabulary.h"

namespace autocli {

/// All tools of the program, in the order of help.
std::span<const Tool> Tools();

}  // namespace autocli
