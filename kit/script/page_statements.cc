// The statements that check what the page shows and the values of JavaScript expressions.
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "app/json_text.h"
#include "app/page_script.h"
#include "page_values_script.h"
#include "script/matcher.h"
#include "script/session.h"
#include "script/statements.h"

namespace corvis::kit {

namespace {

// Converts a result of page_values.js to plain text.
Result<std::string> TakeValue(const std::string& json) {
  const auto outcome = nlohmann::json::parse(json, nullptr, /*allow_exceptions=*/false);
  if (outcome.is_object() && outcome.contains("error")) return Fail(outcome["error"].get<std::string>());
  if (!outcome.is_object()) return Fail("The value can't be converted to JSON.");
  if (!outcome.contains("value")) return "null";
  return PlainValue(outcome["value"].dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
}

// Evaluates the expression in the page repeatedly until the value matches.
Verdict PollPage(Session& session, const std::string& expression, const Matcher& matcher) {
  constexpr auto kInterval = std::chrono::milliseconds(20);
  // A failed evaluation ends the polling: retrying would not help.
  Status readable;
  const Verdict verdict = session.Poll(kInterval, [&]() -> Verdict {
    const Result<std::string> seen = session.conversation.runtime().Evaluate(expression);
    if (!seen) {
      readable = Fail(seen.error());
      return {};
    }
    const auto value = TakeValue(*seen);
    if (!value) return Failed(value.error().message);
    session.shown = *value;
    return Compared(matcher, *value);
  });
  return readable ? verdict : Verdict(readable);
}

void Look(Step& step, std::string expression, Matcher matcher) {
  step.role = StepRole::kLooks;
  step.run = [expression = std::move(expression), matcher = std::move(matcher)](Session& session) {
    return PollPage(session, expression, matcher);
  };
}

}  // namespace

// show "SELECTOR" MATCHER
void ReadShow(LineReader& line, Step& step) {
  const std::string selector = line.Text();
  Look(step, CallInPage(kPageValues, "shownText", nlohmann::json::array({selector})), ReadMatcher(line));
}

// value "EXPRESSION" MATCHER
void ReadValue(LineReader& line, Step& step) {
  const std::string expression = line.Text();
  Look(step, CallWithExpression(kPageValues, "valueOf", expression), ReadMatcher(line));
}

}  // namespace corvis::kit
