// Voice scripts, whatever their text: each line that says something becomes one step or one error at its
// place.
#include <algorithm>
#include <string_view>

#include "require.h"
#include "script/script_reader.h"

namespace {

using namespace corvis::kit;

// The lines that are neither blank nor a comment.
size_t CountStatements(std::string_view text) {
  size_t count = 0;
  while (!text.empty()) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    const size_t first = line.find_first_not_of(" \t");
    if (first != std::string_view::npos && line[first] != '#') ++count;
  }
  return count;
}

void RequirePlace(const Place& place, long lines, const std::string& text) {
  Require(place.line >= 1 && place.line <= lines, "a place is a line of the script");
  Require(place.column >= 1 && static_cast<size_t>(place.column) <= text.size() + 1, "a column is within it");
}

// A regular expression from outside may take its time; that is no fault.
void UseMatcher(const Matcher& matcher) {
  Require(!Describe(matcher).empty(), "a matcher can be told");
  if (matcher.kind == MatchKind::kMatches) return;
  const bool is_text = matcher.kind != MatchKind::kJson;
  Require(Matches(matcher, matcher.texts.front()), "a matcher takes the text that it is made of");
  if (is_text) Matches(matcher, "[{\"a\":1}]");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text = FuzzText(data, size);
  const long lines = std::count(text.begin(), text.end(), '\n') + 1;
  const VoiceScript script = ParseVoiceScript(text, "a.voice");
  Require(script.steps.size() + script.errors.size() == CountStatements(text), "no line is lost");
  for (const ScriptError& error : script.errors) {
    RequirePlace(error.place, lines, text);
    Require(!error.sentence.empty(), "an error is a sentence");
  }
  for (const Step& step : script.steps) {
    RequirePlace(step.place, lines, text);
    Require(*NameOf(step.kind) != '\0', "a step has a name");
    Require(step.duration.count() >= 0, "no time runs backwards");
    if (step.has_matcher) UseMatcher(step.matcher);
  }
  return 0;
}
