// Edit distance.
#include "language/suggestions.h"

#include <algorithm>
#include <array>
#include <climits>
#include <numeric>

namespace corvis::kit {

namespace {

// Longer words are not compared: they are pasted, not mistyped.
constexpr size_t kLongestWord = 80;
// One mistake for so many letters.
constexpr size_t kLettersPerMistake = 3;

// How many letters of the one or the other are left over when equal ones are paired, wherever they stand. No
// fewer mistakes can make one of the other, and counting is quicker than comparing.
size_t LettersLeftOver(std::string_view word, std::string_view candidate) {
  std::array<int, 1U << CHAR_BIT> counts{};
  for (const char c : word) ++counts[static_cast<unsigned char>(c)];
  size_t extra = 0;
  for (const char c : candidate) {
    if (counts[static_cast<unsigned char>(c)]-- <= 0) ++extra;
  }
  const size_t paired = candidate.size() - extra;
  return std::max(extra, word.size() - paired);
}

using Row = std::vector<size_t>;

// The costs of turning beginnings of `word` into beginnings of `candidate`, a row for each letter of `word`.
size_t EditDistance(std::string_view word, std::string_view candidate) {
  Row before_last;
  Row last;
  Row row(candidate.size() + 1);
  std::iota(row.begin(), row.end(), 0U);
  for (size_t i = 1; i <= word.size(); ++i) {
    before_last.swap(last);
    last.swap(row);
    row.assign(candidate.size() + 1, i);
    for (size_t j = 1; j <= candidate.size(); ++j) {
      const size_t replaced = last[j - 1] + (word[i - 1] == candidate[j - 1] ? 0 : 1);
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
      const bool is_swap =
          i > 1 && j > 1 && word[i - 1] == candidate[j - 2] && word[i - 2] == candidate[j - 1];
      if (is_swap) row[j] = std::min(row[j], before_last[j - 2] + 1);
    }
  }
  return row.back();
}

}  // namespace

std::optional<size_t> Mistakes(std::string_view word, std::string_view candidate) {
  const auto [shorter, longer] = std::minmax({word.size(), candidate.size()});
  const size_t most = std::max<size_t>(1, word.size() / kLettersPerMistake);
  if (longer > kLongestWord || longer - shorter > most || LettersLeftOver(word, candidate) > most) return {};
  const size_t distance = EditDistance(word, candidate);
  return distance <= most && distance < shorter ? std::optional(distance) : std::nullopt;
}

std::string ClosestTo(std::string_view word, const std::vector<std::string>& candidates) {
  std::optional<size_t> fewest;
  std::string closest;
  for (const std::string& candidate : candidates) {
    const auto mistakes = Mistakes(word, candidate);
    if (!mistakes || (fewest && *mistakes >= *fewest)) continue;
    fewest = mistakes;
    closest = candidate;
  }
  return closest;
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates) {
  const std::string closest = ClosestTo(word, candidates);
  return closest.empty() ? "" : " Did you mean \"" + closest + "\"?";
}

}  // namespace corvis::kit
