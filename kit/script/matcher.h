// Matchers: the comparisons with which a script checks a text.
#ifndef CORVIS_KIT_SCRIPT_MATCHER_H_
#define CORVIS_KIT_SCRIPT_MATCHER_H_

#include <functional>
#include <string>

#include "base/result.h"
#include "script/line_reader.h"

namespace corvis::kit {

struct Matcher {
  // The matcher as written in a script: `contains "x"`.
  std::string description;
  // Whether the text matches. An error if it can't be compared: it is not JSON, or a regular expression takes
  // too long.
  std::function<Result<bool>(const std::string& actual)> matches;
};

// Reads a matcher. On failure `line` keeps the error and the matcher must not be used.
Matcher ReadMatcher(LineReader& line);

// `matches /PATTERN/`. Fails if the pattern is no regular expression.
Result<Matcher> MatcherOfRegex(const std::string& pattern);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_MATCHER_H_
