// Numbers and times as people say them.
#ifndef CORVIS_VOICE_CORE_SPOKEN_NUMBER_H_
#define CORVIS_VOICE_CORE_SPOKEN_NUMBER_H_

#include <optional>
#include <string>

namespace corvis::voice {

// The number in normalised words: digits, or words up to ninety nine ("twenty one"). At most a million.
std::optional<long> SpokenNumber(const std::string& words);

// Seconds: "90", "90 seconds", "two minutes", "1 hour and 5 minutes", "1:30", "1:02:03". A lone number counts
// seconds.
std::optional<long> SpokenSeconds(const std::string& words);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_CORE_SPOKEN_NUMBER_H_
