#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace autocli {

/// Tells host libraries which command line is carried out, in the variable AUTOCLI_LINE: the number
/// of this process, for which alone it counts, the line's number in a batch or 0, and its words as
/// a shell would take them.
void TellLine(std::size_t number, const std::vector<std::string>& words);

}  // namespace autocli
