#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace autocli {

/// `, did you mean "..."?` to be put after a message; empty when there is nothing to suggest.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace autocli
