// "Did you mean …?": the known words that are nearest to one that is not known.
#ifndef CORVIS_VOICE_SERVICE_SUPPORT_SUGGESTION_H_
#define CORVIS_VOICE_SERVICE_SUPPORT_SUGGESTION_H_

#include <string>
#include <string_view>
#include <vector>

namespace corvis::voice {

// How many characters have to be put in, taken out, replaced or exchanged with their neighbour to turn one
// text into the other; at most `limit` + 1.
size_t EditDistance(std::string_view from, std::string_view to, size_t limit);

// How far off a text of this length may be and still be taken for a slip.
size_t SlipsAllowed(std::string_view text);

// The candidates nearest to `unknown`, in ASCII lower case, that are near enough to be meant; at most
// `count`, the nearest first.
std::vector<std::string> Nearest(std::string_view unknown, const std::vector<std::string>& candidates,
                                 size_t count = 3);

// " Did you mean a, b or c?" for what Nearest gives; empty when there is none.
std::string DidYouMean(std::string_view unknown, const std::vector<std::string>& candidates);
std::string DidYouMean(const std::vector<std::string>& nearest);

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_SERVICE_SUPPORT_SUGGESTION_H_
