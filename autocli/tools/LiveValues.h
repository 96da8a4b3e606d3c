#pragma once

#include <string>
#include <vector>

#include "autocli/line/Vocabulary.h"
#include "autocli/tools/Complete.h"

namespace autocli {

/// The values that the sources know of, as things are now. The commands that they name are
/// executed, if they need no option. One that fails knows nothing.
std::vector<Candidate> LiveValues(const Vocabulary& vocabulary,
                                  const std::vector<ValueSource>& sources);

}  // namespace autocli
