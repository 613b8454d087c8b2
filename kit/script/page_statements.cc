// The statements that check what the page shows and the values of JavaScript expressions.
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

#include "app/json_text.h"
#include "app/page_script.h"
#include "page_values_script.h"
#include "script/matcher.h"
#include "script/page_look.h"
#include "script/session.h"
#include "script/statements.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::json;

// Reads a result of page_values.js.
Result<Json> TakeValue(const std::string& json) {
  const auto outcome = Json::parse(json, nullptr, /*allow_exceptions=*/false);
  if (outcome.is_object() && outcome.contains("error")) return Fail(outcome["error"].get<std::string>());
  if (!outcome.is_object()) return Fail("The value can't be converted to JSON.");
  return outcome.value("value", Json());
}

std::string TextOf(const Json& value) {
  return PlainValue(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

std::string ShownTextExpression(const std::string& selector) {
  return CallInPage(kPageValues, "shownText", Json::array({selector}));
}

std::string ValueExpression(const std::string& expression) {
  return CallWithExpression(kPageValues, "valueOf", expression);
}

Result<Json> Evaluate(Conversation& conversation, const std::string& expression) {
  const Result<std::string> seen = conversation.runtime().Evaluate(expression);
  return seen ? TakeValue(*seen) : Fail(seen.error());
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
    session.shown = TextOf(*value);
    return Compared(matcher, session.shown);
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

Result<Json> ShownText(Conversation& conversation, const std::string& selector) {
  return Evaluate(conversation, ShownTextExpression(selector));
}

Result<Json> ValueOf(Conversation& conversation, const std::string& expression) {
  return Evaluate(conversation, ValueExpression(expression));
}

// show "SELECTOR" MATCHER
void ReadShow(LineReader& line, Step& step) {
  const std::string selector = line.Text();
  Look(step, ShownTextExpression(selector), ReadMatcher(line));
}

// value "EXPRESSION" MATCHER
void ReadValue(LineReader& line, Step& step) {
  const std::string expression = line.Text();
  Look(step, ValueExpression(expression), ReadMatcher(line));
}

}  // namespace corvis::kit
