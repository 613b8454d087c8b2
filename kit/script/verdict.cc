// Builds verdicts from comparisons.
#include "script/verdict.h"

#include <utility>

#include "output/text_forms.h"
#include "script/matcher.h"

namespace corvis::kit {

namespace {

// Truncates a text that would hide the rest of a report, without splitting a UTF-8 character.
std::string Abridged(const std::string& text) {
  constexpr size_t kMostBytes = 600;
  if (text.size() <= kMostBytes) return text;
  size_t end = kMostBytes;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end) + "… (" + std::to_string(text.size()) + " bytes in total)";
}

Verdict Failed(Failure failure) {
  return tl::make_unexpected(std::move(failure));
}

}  // namespace

Verdict::Verdict(const Status& status) {
  if (!status) *this = Failed(status.error().message);
}

Verdict Failed(std::string message) {
  return Failed(Failure{std::move(message), "", "", {}, ""});
}

Verdict Compared(bool holds, std::string expected, const std::string& actual) {
  if (holds) return {};
  return Failed(Failure{"", std::move(expected), Abridged(actual), {}, ""});
}

Verdict Compared(const Matcher& matcher, const std::string& actual) {
  const Result<bool> is_match = matcher.matches(actual);
  Verdict verdict = Compared(is_match && *is_match, matcher.description, Quoted(actual));
  if (!is_match) verdict.error().message = is_match.error().message;
  return verdict;
}

}  // namespace corvis::kit
