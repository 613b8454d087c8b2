// Numbers and times as people say them.
#ifndef CORVIS_KIT_LANGUAGE_SPOKEN_NUMBER_H_
#define CORVIS_KIT_LANGUAGE_SPOKEN_NUMBER_H_

#include <optional>
#include <string>

namespace corvis::kit {

// The number in normalised words: digits, at most a million, or words below a thousand ("twenty one", "one
// hundred and five").
std::optional<long> SpokenNumber(const std::string& words);

// The place in a row, counted from 1: "3rd", or "first" to "twelfth".
std::optional<long> SpokenPlace(const std::string& words);

// Seconds, rounded: "90", "90 seconds", "1.5 minutes", "half an hour", "1 hour and 5 minutes", "an hour and a
// half", "1:30", "1:02:03". A lone number counts seconds.
std::optional<long> SpokenSeconds(const std::string& words);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_SPOKEN_NUMBER_H_
