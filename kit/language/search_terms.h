// What somebody searches for, taken apart into the search terms that applications read.
#ifndef CORVIS_KIT_LANGUAGE_SEARCH_TERMS_H_
#define CORVIS_KIT_LANGUAGE_SEARCH_TERMS_H_

#include <string>

#include "language/actions.h"

namespace corvis::kit {

// The entries of a search bundle: "utterance" (the whole phrase), then those of title, genre, cast,
// content_type, from and to that are found in `words`, and "raw" (the words). "comedies with Jane Doe from
// 1990 to 2000" has a genre, a cast and a range of dates; so have "from the 90s", "after 1990", "before May
// 2000" and "between 1990 and 2000". Words that mean nothing of this are the title.
Entries SearchTerms(const std::string& phrase, const std::string& words);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_LANGUAGE_SEARCH_TERMS_H_
