// What can be said: phrases, and the commands that they become.
#ifndef CORVIS_KIT_LANGUAGE_PHRASES_H_
#define CORVIS_KIT_LANGUAGE_PHRASES_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "language/actions.h"

namespace corvis::kit {

// One row of the phrase table. In a pattern, (a|b) stands for one of several wordings, [a] for words that may
// be left out, and {slot} for what the speaker fills in: {number}, {place} and {time} are counted out in
// digits or words ("3", "twenty one", "third", "two minutes"; a time gives seconds), every other slot takes
// any words as they are said, without quotation marks around them.
//
// The data is sent with {slot} filled in. For an action that takes a bundle it is a list of key={slot} pairs;
// "{terms}" is filled with the search terms found in the words.
struct PhraseRow {
  const char* pattern;
  const char* action;
  const char* data;
};

const std::vector<PhraseRow>& PhraseTable();

// The command that a phrase becomes; nothing when no row fits. Case, punctuation at the end, extra spaces and
// a "please" at either end don't count. Earlier rows win.
std::optional<Command> CommandOf(std::string_view phrase);

// The title in "select {title}", which becomes a command only with the items that are on the screen; nothing
// for any other phrase.
std::optional<std::string> TitleToSelect(std::string_view phrase);

// A phrase that is known and close to this one, with the same words in its slot where they can be kept; or
// empty.
std::string SimilarPhrase(std::string_view phrase);

// A phrase for people that becomes this action: the first row's pattern with its choices made.
std::string SamplePhrase(std::string_view action);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_PHRASES_H_
