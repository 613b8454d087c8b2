// What a text is expected to be.
#ifndef CORVIS_KIT_SCRIPT_MATCHER_H_
#define CORVIS_KIT_SCRIPT_MATCHER_H_

#include <functional>
#include <string>

#include "base/result.h"
#include "script/line_reader.h"

namespace corvis::kit {

struct Matcher {
  // As it is written in a script: `contains "x"`.
  std::string description;
  // Whether the text is as expected. An error when the two can't be compared: the text is not JSON, or a
  // regular expression takes too long.
  std::function<Result<bool>(const std::string& actual)> matches;
};

// Reads a matcher. After a failure, which the line keeps, it can't be used.
Matcher ReadMatcher(LineReader& line);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_MATCHER_H_
