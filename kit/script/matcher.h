// What a text is expected to be.
#ifndef CORVIS_KIT_SCRIPT_MATCHER_H_
#define CORVIS_KIT_SCRIPT_MATCHER_H_

#include <string>
#include <vector>

namespace corvis::kit {

enum class MatchKind { kExact, kContains, kMatches, kJson, kOneOf };

struct Matcher {
  MatchKind kind = MatchKind::kExact;
  // The one expected text, regular expression or JSON text; for kOneOf all that are allowed.
  std::vector<std::string> texts;
};

// Whether `actual` is as expected. JSON: every member that the expected object has is in the actual one, at
// any depth; arrays have the same length; other values are equal. When the two can't be compared (the actual
// text is no JSON, a regular expression takes too long), it is false and `problem`, when given, is a
// sentence.
bool Matches(const Matcher& matcher, const std::string& actual, std::string* problem = nullptr);

// For people: `contains "x"`.
std::string Describe(const Matcher& matcher);

// A sentence when the matcher can't be used (a broken regular expression or JSON text); empty otherwise.
std::string MatcherProblem(const Matcher& matcher);

// The text between quotation marks, with what would break a line written as an escape.
std::string Quoted(const std::string& text);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_MATCHER_H_
