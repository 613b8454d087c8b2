// Suggestions for mistyped words.
#ifndef CORVIS_KIT_LANGUAGE_SUGGESTIONS_H_
#define CORVIS_KIT_LANGUAGE_SUGGESTIONS_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvis::kit {

// How many letters must be changed, added, dropped or swapped with their neighbour to make `candidate` of
// `word`; nothing when that is too much for a typing mistake.
std::optional<size_t> Mistakes(std::string_view word, std::string_view candidate);

// The candidate that is closest to `word`, when it is close enough to be meant; empty otherwise.
std::string ClosestTo(std::string_view word, const std::vector<std::string>& candidates);

// " Did you mean …?" or nothing.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_SUGGESTIONS_H_
