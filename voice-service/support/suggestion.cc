// The nearest words by edit distance.
#include "support/suggestion.h"

#include <algorithm>
#include <utility>

#include "support/text.h"

namespace corvis::voice {

namespace {

// Longer texts are no slips of the tongue or keyboard, and would take long to compare.
constexpr size_t kLongestCompared = 200;

size_t Difference(size_t a, size_t b) {
  return a > b ? a - b : b - a;
}

}  // namespace

size_t EditDistance(std::string_view from, std::string_view to, size_t limit) {
  if (Difference(from.size(), to.size()) > limit || std::max(from.size(), to.size()) > kLongestCompared) {
    return limit + 1;
  }
  std::vector<size_t> before_last;
  std::vector<size_t> last(to.size() + 1);
  for (size_t j = 0; j <= to.size(); ++j) last[j] = j;
  for (size_t i = 1; i <= from.size(); ++i) {
    std::vector<size_t> row(to.size() + 1, i);
    for (size_t j = 1; j <= to.size(); ++j) {
      const size_t replaced = last[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
      row[j] = std::min({row[j - 1] + 1, last[j] + 1, replaced});
      if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
        row[j] = std::min(row[j], before_last[j - 2] + 1);
      }
    }
    before_last = std::exchange(last, std::move(row));
  }
  return std::min(last[to.size()], limit + 1);
}

size_t SlipsAllowed(std::string_view text) {
  constexpr size_t kCharactersPerSlip = 4;
  constexpr size_t kMostSlips = 4;
  return std::clamp(text.size() / kCharactersPerSlip, size_t{1}, kMostSlips);
}

std::vector<std::string> Nearest(std::string_view unknown, const std::vector<std::string>& candidates,
                                 size_t count) {
  const std::string lower = Lower(unknown);
  const size_t limit = SlipsAllowed(lower);
  std::vector<std::pair<size_t, const std::string*>> near;
  for (const std::string& candidate : candidates) {
    const size_t distance = EditDistance(lower, Lower(candidate), limit);
    if (distance <= limit) near.emplace_back(distance, &candidate);
  }
  std::stable_sort(near.begin(), near.end(), [](auto& a, auto& b) { return a.first < b.first; });
  std::vector<std::string> nearest;
  for (const auto& [distance, candidate] : near) {
    const bool is_new = std::find(nearest.begin(), nearest.end(), *candidate) == nearest.end();
    if (is_new && nearest.size() < count) nearest.push_back(*candidate);
  }
  return nearest;
}

std::string DidYouMean(const std::vector<std::string>& nearest) {
  return nearest.empty() ? "" : " Did you mean " + Enumerate(nearest, "or") + "?";
}

std::string DidYouMean(std::string_view unknown, const std::vector<std::string>& candidates) {
  return DidYouMean(Nearest(unknown, candidates));
}

}  // namespace corvis::voice
