// What can be said: phrases, and the commands that they become.
#ifndef CORVIS_VOICE_CORE_PHRASES_H_
#define CORVIS_VOICE_CORE_PHRASES_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/actions.h"

namespace corvis::voice {

// One row of the phrase table. In a pattern, (a|b) stands for one of several wordings, [a] for words that may
// be left out, and {slot} for what the speaker fills in: {number} and {time} are counted out in digits or
// words
// ("3", "twenty one", "two minutes"; a time gives seconds), every other slot takes any words.
//
// The data is sent with {slot} filled in. For an action that takes a bundle it is a list of key={slot} pairs;
// "{terms}" stands for the search terms found in the words, "{phrase}" for the whole phrase.
struct PhraseRow {
  const char* pattern;
  const char* action;
  const char* data;
};

const std::vector<PhraseRow>& PhraseTable();

// The command that a phrase becomes; nothing when no row fits. Case, punctuation at the end and extra blanks
// don't count. Earlier rows win.
std::optional<Command> CommandOf(std::string_view phrase);

// A phrase that is close to this one, or empty.
std::string SimilarPhrase(std::string_view phrase);

// A phrase for people that becomes this action: the first row's pattern with its choices made.
std::string SamplePhrase(std::string_view action);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_CORE_PHRASES_H_
