// Matching what was said against the patterns of the phrase table.
#ifndef CORVIS_VOICE_CORE_PHRASE_PATTERN_H_
#define CORVIS_VOICE_CORE_PHRASE_PATTERN_H_

#include <string>
#include <string_view>
#include <vector>

namespace corvis::voice {

// Lower case (of the Latin letters), single blanks, no punctuation at the end.
std::string NormalisedPhrase(std::string_view phrase);

// What a slot of a pattern took. A pattern has at most one slot; one without has a nameless empty value.
struct SlotValue {
  std::string name;
  std::string words;
};

// All ways in which a normalised phrase fits a pattern, those that leave fewest words out first.
std::vector<SlotValue> MatchPattern(std::string_view pattern, const std::string& phrase);

// The pattern as somebody could say it: the first of every choice, nothing that may be left out, and an
// example for a number or a time; other slots stay as they are.
std::string SampleOfPattern(std::string_view pattern);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_CORE_PHRASE_PATTERN_H_
