// Fuzzes voice scripts: each line with a statement becomes one step, or one error with its position.
#include <algorithm>
#include <string_view>

#include "require.h"
#include "script/matcher.h"
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

void RequirePlace(const ScriptPlace& place, long lines, const std::string& text) {
  Require(place.line >= 1 && place.line <= lines, "a place is a line of the script");
  Require(place.column >= 1 && static_cast<size_t>(place.column) <= text.size() + 1, "a column is within it");
}

// Checks a test and its steps, and returns the number of its statements.
size_t UseTest(const ScriptTest& test, long lines, const std::string& text) {
  RequirePlace(test.place, lines, text);
  for (const Step& step : test.steps) {
    RequirePlace(step.place, lines, text);
    Require(!step.statement.empty(), "a step has a name");
    Require(step.run || step.role == StepRole::kNote, "a step does something");
  }
  return test.steps.size() + (test.name ? 1 : 0);
}

// Does not run regular expressions, because an untrusted one may legitimately be slow.
void UseMatcher(const std::string& text) {
  LineReader line(text);
  const Matcher matcher = ReadMatcher(line);
  if (line.has_failed()) return;
  Require(!matcher.description.empty(), "a matcher can be described");
  if (matcher.description.compare(0, 7, "matches") != 0) static_cast<void>(matcher.matches("[{\"a\":1}]"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const SpokenLanguage kEnglish;
  const std::string text = FuzzText(data, size);
  const long lines = std::count(text.begin(), text.end(), '\n') + 1;
  const VoiceScript script = ParseVoiceScript(text, "a.voice", kEnglish);
  size_t statements = script.errors.size();
  for (const ScriptTest& test : script.tests) statements += UseTest(test, lines, text);
  Require(statements == CountStatements(text), "no line is lost");
  for (const ScriptError& error : script.errors) {
    RequirePlace(error.place, lines, text);
    Require(!error.message.empty(), "an error has a message");
  }
  UseMatcher(text);
  return 0;
}
