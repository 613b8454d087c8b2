// Numbers and times as people say them.
#ifndef CORVIS_VOICE_SERVICE_PHRASES_NUMBERS_H_
#define CORVIS_VOICE_SERVICE_PHRASES_NUMBERS_H_

#include <optional>
#include <string>

#include "phrases/words.h"

namespace corvis::voice {

// "3", "1,000", "three", "twenty-one", "one hundred and five" (below a million). Nothing for anything else.
std::optional<long> ParseNumber(Span words);

// "first", "third", "21st", "twenty second"; plain numbers too ("the 3").
std::optional<long> ParseOrdinal(Span words);

// Seconds of "30 seconds", "two minutes", "an hour and 5 minutes", "1:30", "1:02:03", "1.5 minutes",
// "half an hour", "90s"; a number alone is seconds. At most 100 hours. Nothing for anything else.
std::optional<double> ParseSeconds(Span words);

// Without an exponent and without zeros at the end: "90", "1.5".
std::string DecimalText(double value);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_SERVICE_PHRASES_NUMBERS_H_
