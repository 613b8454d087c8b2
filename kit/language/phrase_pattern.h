// Matching what was said against the patterns of the phrase table.
#ifndef CORVIS_KIT_LANGUAGE_PHRASE_PATTERN_H_
#define CORVIS_KIT_LANGUAGE_PHRASE_PATTERN_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvis::kit {

// Single blanks, none at the ends, no punctuation at the end. Letters keep their case.
std::string TidyPhrase(std::string_view phrase);

// Tidy, and in lower case (of the Latin letters).
std::string NormalisedPhrase(std::string_view phrase);

// The words of a text, split at white space.
std::vector<std::string> SplitWords(std::string_view text);

// One way to say a pattern: fixed words, and for most a slot behind them, maybe with fixed words behind that.
struct Wording {
  std::string before;
  // Empty for none; `behind` is empty then.
  std::string slot;
  std::string behind;
};

// All wordings of a pattern, with (a|b) and [a|b] written out; those that leave fewest words out first.
std::vector<Wording> WordingsOf(std::string_view pattern);

// What the slot takes of a tidy phrase when the wording fits it (case doesn't count), without the quotation
// marks around it; nothing when it doesn't fit. A wording without a slot takes an empty text. Points into
// `phrase`.
std::optional<std::string_view> SlotWords(const Wording& wording, std::string_view phrase);

// Something that could be said in a slot: an example for numbers and times, otherwise the slot in braces.
std::string SlotExample(const std::string& slot);

// The pattern as somebody could say it: the first of every choice, nothing that may be left out, and an
// example for a number or a time; other slots stay as they are.
std::string SampleOfPattern(std::string_view pattern);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_PHRASE_PATTERN_H_
