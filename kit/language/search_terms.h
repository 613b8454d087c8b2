// What somebody searches for, taken apart into the search terms that applications read.
#ifndef CORVIS_KIT_LANGUAGE_SEARCH_TERMS_H_
#define CORVIS_KIT_LANGUAGE_SEARCH_TERMS_H_

#include <string>

#include "language/grammar.h"

namespace corvis::kit {

// The entries of a search bundle: "utterance" (the whole phrase), then those of title, genre, cast,
// content_type, from and to that the language's [search] finds in `words`, and "raw" (the words). Words that
// mean nothing of this are the title.
Entries SearchTerms(const Grammar& grammar, const std::string& utterance, const std::string& words);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_SEARCH_TERMS_H_
