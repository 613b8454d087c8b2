// What each kind of step does.
#include "run/script_runner.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "core/raw_command.h"
#include "service/main_loop.h"

namespace corvis::voice {

namespace {

constexpr auto kPollInterval = std::chrono::milliseconds(20);
constexpr const char* kPrivilegeBase = "http://developer.nurvo.example/privilege/";

double Milliseconds(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

std::string MillisecondsText(Clock::duration time) {
  char text[32];
  std::snprintf(text, sizeof(text), "%.1f ms", Milliseconds(time));
  return text;
}

// A text value of the page without its quotation marks; other values as JSON.
std::string PlainValue(const std::string& json) {
  const auto parsed = nlohmann::json::parse(json, nullptr, false);
  return parsed.is_string() ? parsed.get<std::string>() : json;
}

bool IsItemStep(StepKind kind) {
  return kind == StepKind::kItemCount || kind == StepKind::kItemTitle || kind == StepKind::kItemNumber ||
         kind == StepKind::kItemState || kind == StepKind::kItemChange;
}

// Steps that only look leave the page as it is.
bool IsLookOnly(StepKind kind) {
  return IsItemStep(kind) || kind == StepKind::kExpect || kind == StepKind::kAction ||
         kind == StepKind::kWithin || kind == StepKind::kNote || kind == StepKind::kTimeout ||
         kind == StepKind::kShow || kind == StepKind::kValue;
}

std::string SelectorExpression(const std::string& selector) {
  const std::string text =
      nlohmann::json(selector).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  return "(function (e) { return e === null ? null : (e.value === undefined ? e.textContent : "
         "String(e.value)).trim(); })"
         "(document.querySelector(" +
         text + "))";
}

}  // namespace

ScriptRunner::ScriptRunner(Conversation& conversation, std::vector<Reporter*> reporters,
                           Clock::time_point deadline)
    : conversation_(conversation), reporters_(std::move(reporters)), deadline_(deadline) {}

void ScriptRunner::Run(const VoiceScript& script) {
  for (Reporter* reporter : reporters_) reporter->OnScript(script);
  items_.reset();
  items_before_.reset();
  bool has_failed = false;
  for (const Step& step : script.steps) {
    if (step.kind == StepKind::kTest) has_failed = false;
    StepResult result;
    result.step = &step;
    result.is_skipped = has_failed;
    if (!has_failed) {
      const auto begin = Clock::now();
      result = RunStep(step);
      result.took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
    }
    has_failed = has_failed || !result.is_ok;
    ++(result.is_skipped ? totals_.skipped : result.is_ok ? totals_.passed : totals_.failed);
    for (Reporter* reporter : reporters_) reporter->OnStep(script, result);
  }
}

void ScriptRunner::Finish(StepResult& result, const std::string& problem) {
  result.is_ok = problem.empty();
  result.problem = problem;
}

void ScriptRunner::Check(StepResult& result, bool is_ok, const std::string& expected,
                         const std::string& actual) {
  result.is_ok = is_ok;
  if (is_ok) return;
  result.expected = expected;
  result.actual = actual;
}

StepResult ScriptRunner::RunStep(const Step& step) {
  StepResult result;
  result.step = &step;
  if (IsInterrupted() || Clock::now() > deadline_) {
    Finish(result, IsInterrupted() ? "Interrupted." : "The time for the whole run is over.");
    return result;
  }
  if (!IsLookOnly(step.kind)) are_items_fresh_ = false;
  switch (step.kind) {
    case StepKind::kTest:
    case StepKind::kNote:
      break;
    case StepKind::kTimeout:
      conversation_.set_timeout(step.duration);
      break;
    case StepKind::kSay:
    case StepKind::kSend:
      Say(result);
      break;
    case StepKind::kInject:
      Inject(result);
      break;
    case StepKind::kExpect:
    case StepKind::kNoAnswer:
    case StepKind::kWithin:
      Expect(result);
      break;
    case StepKind::kAction:
      ExpectAction(result);
      break;
    case StepKind::kShow:
      Show(result);
      break;
    case StepKind::kValue:
      Value(result);
      break;
    case StepKind::kItemCount:
    case StepKind::kItemTitle:
    case StepKind::kItemNumber:
    case StepKind::kItemState:
    case StepKind::kItemChange:
      CheckItems(result);
      break;
    case StepKind::kReload:
      Finish(result, conversation_.Reload());
      break;
    case StepKind::kOpen:
      Finish(result, conversation_.Open(step.text));
      break;
    case StepKind::kRestart:
      Finish(result, conversation_.Restart());
      break;
    case StepKind::kPrivileges: {
      std::vector<std::string> uris = step.words;
      for (std::string& uri : uris) {
        if (uri.find("://") == std::string::npos) uri.insert(0, kPrivilegeBase);
      }
      Finish(result, conversation_.runtime().SetPrivileges(uris).error);
      break;
    }
  }
  return result;
}

void ScriptRunner::Say(StepResult& result) {
  const Step& step = *result.step;
  turn_ = step.kind == StepKind::kSay ? conversation_.Say(step.text)
                                      : conversation_.Send(ParseRawCommand(step.text), step.text);
  result.turn = &turn_;
  // No answer is judged by the expectations that follow; what could not even be sent is wrong by itself.
  if (!turn_.is_sent) Finish(result, turn_.outcome.problem);
}

void ScriptRunner::Inject(StepResult& result) {
  const Step& step = *result.step;
  if (step.duration.count() > 0) WaitUntil([] { return false; }, step.duration);
  Finish(result, conversation_.service().SendEntries(conversation_.app_id(), step.entries));
}

void ScriptRunner::Expect(StepResult& result) {
  const Step& step = *result.step;
  const Outcome& outcome = turn_.outcome;
  if (step.kind == StepKind::kNoAnswer) {
    Check(result, !outcome.is_answered, "no answer", outcome.is_answered ? Quoted(outcome.answer.data) : "");
  } else if (!outcome.is_answered) {
    Finish(result, outcome.problem);
  } else if (step.kind == StepKind::kWithin) {
    Check(result, outcome.answer.took <= step.duration,
          "at most " + std::to_string(step.duration.count()) + " ms", MillisecondsText(outcome.answer.took));
  } else {
    Check(result, Matches(step.matcher, outcome.answer.data), Describe(step.matcher),
          Quoted(outcome.answer.data));
  }
}

void ScriptRunner::ExpectAction(StepResult& result) {
  const Step& step = *result.step;
  Check(result, turn_.command.action == step.text, step.text, turn_.command.action);
  if (result.is_ok && step.has_matcher) {
    const std::string data = DescribeData(turn_.command);
    Check(result, Matches(step.matcher, data), Describe(step.matcher), Quoted(data));
  }
}

void ScriptRunner::Poll(StepResult& result, const std::function<ControlResult()>& look) {
  const Step& step = *result.step;
  const auto end = std::min(Clock::now() + conversation_.timeout(), deadline_);
  for (;;) {
    const ControlResult seen = look();
    const std::string value = PlainValue(seen.value);
    result.problem.clear();
    Check(result, seen.is_ok && Matches(step.matcher, value), Describe(step.matcher), Quoted(value));
    if (!seen.is_ok) Finish(result, seen.error);
    if (result.is_ok) {
      result.expected.clear();
      result.actual.clear();
      result.shown = value;
      return;
    }
    if (Clock::now() >= end || IsInterrupted()) return;
    WaitUntil([] { return false; }, kPollInterval);
  }
}

void ScriptRunner::Show(StepResult& result) {
  const std::string expression = SelectorExpression(result.step->text);
  Poll(result, [this, &expression] { return conversation_.runtime().Evaluate(expression); });
  if (!result.is_ok && result.actual == Quoted("null")) {
    result.problem = "The page has no element " + result.step->text + ".";
  }
}

void ScriptRunner::Value(StepResult& result) {
  Poll(result, [this, &result] { return conversation_.runtime().Evaluate(result.step->text); });
}

void ScriptRunner::CheckItems(StepResult& result) {
  if (!are_items_fresh_ || !items_ || result.step->kind == StepKind::kItemChange) {
    items_before_ = std::exchange(items_, {});
    std::string problem;
    items_ = conversation_.AskItems(problem);
    if (!items_) return Finish(result, problem);
    are_items_fresh_ = true;
  }
  CheckItem(result, *items_);
}

void ScriptRunner::CheckItem(StepResult& result, const ItemList& list) {
  const Step& step = *result.step;
  const auto count = static_cast<long>(list.items.size());
  if (step.kind == StepKind::kItemCount) {
    const std::string wanted = (step.is_at_least ? "at least " : "") + std::to_string(step.number) + " items";
    return Check(result, step.is_at_least ? count >= step.number : count == step.number, wanted,
                 std::to_string(count) + " items");
  }
  if (step.kind == StepKind::kItemChange) return CheckChange(result, list);
  if (step.kind == StepKind::kItemNumber) {
    const auto found = std::find_if(list.items.begin(), list.items.end(),
                                    [&step](const Item& item) { return item.title == step.text; });
    if (found == list.items.end()) return Finish(result, "There is no item " + Quoted(step.text) + ".");
    return Check(result, found->number == step.number, std::to_string(step.number),
                 std::to_string(found->number));
  }
  const auto found = std::find_if(list.items.begin(), list.items.end(),
                                  [&step](const Item& item) { return item.number == step.number; });
  if (found == list.items.end()) {
    return Finish(result, "There is no item " + std::to_string(step.number) + "; the last is " +
                              std::to_string(count - 1) + ".");
  }
  if (step.kind == StepKind::kItemTitle) {
    return Check(result, Matches(step.matcher, found->title), Describe(step.matcher), Quoted(found->title));
  }
  const bool holds =
      step.text == "focused" ? found->is_focused : found->is_visible == (step.text == "visible");
  Check(result, holds, step.text, "not " + step.text);
}

void ScriptRunner::CheckChange(StepResult& result, const ItemList& list) {
  const Step& step = *result.step;
  if (!items_before_)
    return Finish(result, "There is nothing to compare with; an items statement stands before this.");
  const auto changes = CompareItems(*items_before_, list);
  const auto count = [&changes](ItemChange::Kind kind) {
    return std::count_if(changes.begin(), changes.end(),
                         [kind](const auto& change) { return change.kind == kind; });
  };
  const bool is_none = step.text == "none";
  const long found = is_none                   ? static_cast<long>(changes.size())
                     : step.text == "moved"    ? count(ItemChange::Kind::kMoved)
                     : step.text == "appeared" ? count(ItemChange::Kind::kAppeared)
                                               : count(ItemChange::Kind::kVanished);
  Check(result, found == (is_none ? 0 : step.number),
        is_none ? "no change" : std::to_string(step.number) + " " + step.text, Describe(changes));
}

}  // namespace corvis::voice
