// What Tab does at the prompt: the continuations of a typed text.
#ifndef CORVIS_KIT_CLI_COMPLETION_H_
#define CORVIS_KIT_CLI_COMPLETION_H_

#include <functional>
#include <string>
#include <vector>

#include "language/phrasebook.h"

namespace corvis::kit {

// Returns whole lines, some of which start with the typed text.
using Completer = std::function<std::vector<std::string>(const std::string& typed)>;

// The effect of Tab on a typed text.
struct Completion {
  // The common continuation of all lines that start with the typed text, whose case doesn't count; ends in a
  // space if there is only one.
  std::string insertion;
  // Those lines, to be listed if `insertion` is empty.
  std::vector<std::string> words;
};

Completion Complete(const std::string& typed, const std::vector<std::string>& words);

// The beginning of a text that requests an item by its title, up to the title: "select " of "select pl";
// empty if the text does not.
std::string SelectingPart(const Phrasebook& phrases, const std::string& typed);

// The data with which the language's phrases send an action.
std::vector<std::string> ValuesOfAction(const Phrasebook& phrases, const std::string& action);

// `beginning` followed by each of the values.
std::vector<std::string> Each(const std::string& beginning, const std::vector<std::string>& values);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_COMPLETION_H_
