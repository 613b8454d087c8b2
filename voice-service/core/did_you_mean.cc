// Edit distance.
#include "core/did_you_mean.h"

#include <algorithm>
#include <numeric>

namespace corvis::voice {

namespace {

// Longer words are not compared: they are pasted, not mistyped.
constexpr size_t kLongestWord = 80;

size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), 0U);
  for (size_t i = 1; i <= a.size(); ++i) {
    size_t diagonal = row[0];
    row[0] = i;
    for (size_t j = 1; j <= b.size(); ++j) {
      const size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
    }
  }
  return row.back();
}

}  // namespace

std::string ClosestTo(std::string_view word, const std::vector<std::string>& candidates) {
  if (word.size() > kLongestWord) return "";
  size_t best = 1 + word.size() / 3;
  std::string closest;
  for (const std::string& candidate : candidates) {
    if (candidate.size() > kLongestWord) continue;
    const size_t distance = EditDistance(word, candidate);
    if (distance > best || (distance == best && !closest.empty())) continue;
    best = distance;
    closest = candidate;
  }
  return closest;
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates) {
  const std::string closest = ClosestTo(word, candidates);
  return closest.empty() ? "" : " Did you mean \"" + closest + "\"?";
}

}  // namespace corvis::voice
