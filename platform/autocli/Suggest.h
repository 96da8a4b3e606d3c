#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What a mistyped word may have meant. Plug-ins answer with it as the framework does.
namespace Corvex::Suggest {

/// How many single steps (insert, delete or replace a byte, swap two neighbours) lie between the
/// words. ASCII letters count as equal in either case.
inline std::size_t EditDistance(std::string_view a, std::string_view b) {
  const auto lower = [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  };
  const auto same = [&](std::size_t i, std::size_t j) { return lower(a[i]) == lower(b[j]); };
  std::vector<std::size_t> beforeLast(b.size() + 1);
  std::vector<std::size_t> last(b.size() + 1);
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::swap(beforeLast, last);
    std::swap(last, row);
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t replaced = last[j - 1] + (same(i - 1, j - 1) ? 0 : 1);
      row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
      if (i > 1 && j > 1 && same(i - 1, j - 2) && same(i - 2, j - 1)) {
        row[j] = std::min(row[j], beforeLast[j - 2] + 1);
      }
    }
  }
  return row[b.size()];
}

/// The first of the candidates nearest to `word`; empty when none is near enough to be a slip of
/// typing.
inline std::string Closest(std::string_view word, const std::vector<std::string>& candidates) {
  const std::size_t limit = word.size() <= 3 ? 1 : word.size() <= 7 ? 2 : 3;
  std::size_t nearest = limit + 1;
  std::string closest;
  for (const std::string& candidate : candidates) {
    // The distance is at least the difference in length: words of any length are skipped at once.
    const std::size_t shorter = std::min(word.size(), candidate.size());
    const std::size_t longer = std::max(word.size(), candidate.size());
    if (longer - shorter >= nearest) continue;
    const std::size_t distance = EditDistance(word, candidate);
    if (distance < nearest && distance < longer) {
      nearest = distance;
      closest = candidate;
    }
  }
  return closest;
}

}  // namespace Corvex::Suggest
