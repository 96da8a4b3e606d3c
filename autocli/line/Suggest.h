#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace autocli {

/// How many single steps (insert, delete or replace a byte, swap two neighbours) lie between the
/// words.
std::size_t EditDistance(std::string_view a, std::string_view b);

/// The candidate nearest to `word`, the first of several; empty when none is near enough for a slip
/// of the fingers.
std::string Closest(std::string_view word, const std::vector<std::string>& candidates);

/// `, did you mean "..."?` to be put behind a message; empty when there is nothing to suggest.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace autocli
