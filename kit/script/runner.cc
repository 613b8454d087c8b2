// What each kind of step does.
#include "script/runner.h"

#include <glib.h>

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>

#include "app/json_text.h"
#include "language/raw_command.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

constexpr auto kPollInterval = std::chrono::milliseconds(20);

double Milliseconds(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

std::string MillisecondsText(Clock::duration time) {
  char text[32];
  std::snprintf(text, sizeof(text), "%.1f ms", Milliseconds(time));
  return text;
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

// So that an expression that throws is not an uncaught error of the page each time it is looked at.
std::string Guarded(const std::string& expression) {
  return "(function () { try { return { value: (" + expression +
         "\n) }; } catch (error) { return { error: typeof error === 'string' ? error "
         ": 'The expression threw ' + error + '.' }; } })()";
}

// The value of a guarded expression as a plain text; or what it threw, as a sentence in `problem`.
std::string TakeGuarded(const std::string& json, std::string& problem) {
  const auto outcome = nlohmann::json::parse(json, nullptr, /*allow_exceptions=*/false);
  problem.clear();
  if (!outcome.is_object()) {
    problem = "The value has no JSON text.";
  } else if (outcome.contains("error")) {
    problem = outcome["error"].get<std::string>();
  } else if (outcome.contains("value")) {
    return PlainValue(outcome["value"].dump(-1, ' ', false, nlohmann::json::error_handler_t::replace));
  }
  return problem.empty() ? "null" : "";
}

std::string SelectorExpression(const std::string& selector) {
  return "(function (e) {"
         "  if (e === null) throw " +
         JsonText("The page has no element " + selector + ".") +
         ";"
         "  return String(/^(input|select|textarea)$/.test(e.localName) ? e.value : e.textContent).trim();"
         "})(document.querySelector(" +
         JsonText(selector) + "))";
}

// What is longer would hide the rest of a report. Never cuts a character in two.
std::string Abridged(const std::string& text) {
  constexpr size_t kMostBytes = 600;
  if (text.size() <= kMostBytes) return text;
  size_t end = kMostBytes;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end) + "… (" + std::to_string(text.size()) + " bytes in all)";
}

}  // namespace

// An injection that waits for its time.
struct ScriptRunner::Delayed {
  Conversation& conversation;
  const Step& step;
  guint source = 0;

  Delayed(Conversation& with, const Step& what) : conversation(with), step(what) {
    source = g_timeout_add(
        static_cast<guint>(step.duration.count()),
        [](gpointer data) {
          auto& self = *static_cast<Delayed*>(data);
          std::string ignored;
          self.conversation.service().Inject(self.conversation.app_id(), self.step.entries, ignored);
          self.source = 0;
          return G_SOURCE_REMOVE;
        },
        this);
  }
  ~Delayed() {
    if (source != 0) g_source_remove(source);
  }
  Delayed(const Delayed&) = delete;
  Delayed& operator=(const Delayed&) = delete;
};

ScriptRunner::ScriptRunner(Conversation& conversation, std::vector<Reporter*> reporters,
                           Photographer photographer)
    : conversation_(conversation),
      reporters_(std::move(reporters)),
      photographer_(std::move(photographer)),
      timeout_(conversation.timeout()) {}
ScriptRunner::~ScriptRunner() = default;

void ScriptRunner::Run(const VoiceScript& script) {
  for (Reporter* reporter : reporters_) reporter->OnScript(script);
  delayed_.clear();
  items_.reset();
  items_before_.reset();
  injected_ = 0;
  conversation_.set_timeout(timeout_);
  std::string obstacle;
  if (!is_first_script_ && !is_over_) obstacle = conversation_.BeginAnew();
  is_first_script_ = false;
  bool has_failed = false;
  for (size_t i = 0; i < script.steps.size(); ++i) {
    const Step& step = script.steps[i];
    next_ = i + 1 < script.steps.size() ? &script.steps[i + 1] : nullptr;
    if (step.kind == StepKind::kTest) {
      has_failed = false;
      conversation_.ForgetConsole();
    }
    StepResult result;
    result.step = &step;
    result.is_skipped = has_failed || is_over_;
    if (!obstacle.empty() && !IsHeading(step.kind) && !result.is_skipped) {
      Finish(result, std::exchange(obstacle, ""));
    } else if (!result.is_skipped) {
      result = RunStep(step);
    }
    has_failed = has_failed || !result.is_ok;
    if (!result.is_ok) Document(script, result);
    if (!IsHeading(step.kind)) {
      ++(result.is_skipped ? totals_.skipped : result.is_ok ? totals_.passed : totals_.failed);
    }
    for (Reporter* reporter : reporters_) reporter->OnStep(script, result);
  }
  delayed_.clear();
}

void ScriptRunner::Document(const VoiceScript& script, StepResult& result) {
  if (IsInterrupted()) is_over_ = true;
  // The page's lines come a moment after what it did.
  constexpr auto kConsoleDelay = std::chrono::milliseconds(50);
  constexpr size_t kMostLines = 10;
  WaitUntil([] { return false; }, kConsoleDelay);
  const auto& lines = conversation_.console();
  const size_t count = std::min(lines.size(), kMostLines);
  const std::string exception = conversation_.ExceptionOf(turn_, exceptions_);
  if (!exception.empty())
    result.problem += (result.problem.empty() ? "" : " ") + ("The callback threw: " + exception);
  result.console.assign(lines.end() - static_cast<std::ptrdiff_t>(count), lines.end());
  if (photographer_ && !is_over_) result.screenshot = photographer_(script, *result.step);
}

std::string ScriptRunner::Prepare(const Step& step) {
  if (step.kind != StepKind::kTest || crashes_ == conversation_.crashes()) return "";
  crashes_ = conversation_.crashes();
  return conversation_.WaitForApp(conversation_.timeout());
}

void ScriptRunner::Finish(StepResult& result, const std::string& problem) {
  result.is_ok = problem.empty();
  result.problem = problem;
  result.expected.clear();
  result.actual.clear();
}

void ScriptRunner::Check(StepResult& result, bool is_ok, const std::string& expected,
                         const std::string& actual) {
  result.is_ok = is_ok;
  result.expected.clear();
  result.actual.clear();
  if (is_ok) return;
  result.expected = expected;
  result.actual = Abridged(actual);
}

void ScriptRunner::CheckText(StepResult& result, const std::string& actual) {
  std::string problem;
  const bool is_ok = Matches(result.step->matcher, actual, &problem);
  Check(result, is_ok, Describe(result.step->matcher), Quoted(actual));
  result.problem = problem;
}

StepResult ScriptRunner::RunStep(const Step& step) {
  StepResult result;
  result.step = &step;
  const auto begin = Clock::now();
  if (!IsLookOnly(step.kind)) are_items_fresh_ = false;
  const std::string obstacle = Prepare(step);
  if (obstacle.empty()) {
    Do(result);
  } else {
    Finish(result, obstacle);
  }
  result.took = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
  if (IsInterrupted() && !IsHeading(step.kind)) {
    Finish(result, IsTimeOver() ? "The time for the whole run is over." : "The run was interrupted.");
  }
  return result;
}

void ScriptRunner::Do(StepResult& result) {
  const Step& step = *result.step;
  const Arrival arrival{step.is_listening, step.duration};
  switch (step.kind) {
    case StepKind::kTest:
    case StepKind::kNote:
      return;
    case StepKind::kTimeout:
      return conversation_.set_timeout(step.duration);
    case StepKind::kWait:
      WaitUntil([] { return false; }, step.duration);
      return;
    case StepKind::kSay:
    case StepKind::kSend:
      return Say(result);
    case StepKind::kInject:
      return Inject(result);
    case StepKind::kExpect:
    case StepKind::kNoAnswer:
    case StepKind::kWithin:
      return Expect(result);
    case StepKind::kAction:
      return ExpectAction(result);
    case StepKind::kShow:
      return Show(result);
    case StepKind::kValue:
      return Value(result);
    case StepKind::kItemCount:
    case StepKind::kItemTitle:
    case StepKind::kItemNumber:
    case StepKind::kItemState:
    case StepKind::kItemChange:
      return CheckItems(result);
    case StepKind::kReload:
      return Finish(result, conversation_.Reload(arrival));
    case StepKind::kOpen:
      return Finish(result, conversation_.Open(step.text, arrival));
    case StepKind::kRestart:
      return Finish(result, conversation_.Restart(arrival));
    case StepKind::kPrivileges:
      return SetPrivileges(result);
  }
}

void ScriptRunner::SetPrivileges(StepResult& result) {
  std::vector<std::string> uris = result.step->words;
  for (std::string& uri : uris) uri = PrivilegeUri(uri);
  Finish(result, conversation_.runtime().SetPrivileges(uris).error);
}

void ScriptRunner::Say(StepResult& result) {
  const Step& step = *result.step;
  WaitUntil([] { return false; }, pace_);
  injected_ = 0;
  exceptions_ = conversation_.exceptions().size();
  const bool is_silence_expected = next_ != nullptr && next_->kind == StepKind::kNoAnswer;
  const auto timeout = conversation_.timeout();
  if (is_silence_expected && next_->duration.count() > 0) conversation_.set_timeout(next_->duration);
  turn_ = step.kind == StepKind::kSay ? conversation_.Say(step.text)
                                      : conversation_.Send(ParseRawCommand(step.text).value(), step.text);
  conversation_.set_timeout(timeout);
  result.turn = &turn_;
  if (!turn_.outcome.is_answered && !is_silence_expected) Finish(result, turn_.outcome.problem);
}

void ScriptRunner::Inject(StepResult& result) {
  const Step& step = *result.step;
  if (step.duration.count() > 0) {
    delayed_.push_back(std::make_unique<Delayed>(conversation_, step));
    return;
  }
  std::string problem;
  turn_ = {};
  turn_.said = step.source;
  crashes_ = conversation_.crashes();
  exceptions_ = conversation_.exceptions().size();
  injected_ = conversation_.service().Inject(conversation_.app_id(), step.entries, problem);
  turn_.outcome.problem = "What was injected is no whole command, so no answer is expected.";
  Finish(result, problem);
}

void ScriptRunner::FetchAnswer(std::chrono::milliseconds timeout) {
  const uint64_t id = std::exchange(injected_, 0);
  if (id == 0) return;
  turn_.outcome = conversation_.service().Await(conversation_.app_id(), id, timeout);
  conversation_.ExplainDeparture(turn_.outcome, crashes_);
}

void ScriptRunner::Expect(StepResult& result) {
  const Step& step = *result.step;
  const bool is_limited = step.kind == StepKind::kNoAnswer && step.duration.count() > 0;
  FetchAnswer(is_limited ? step.duration : conversation_.timeout());
  const Outcome& outcome = turn_.outcome;
  if (step.kind == StepKind::kNoAnswer) {
    Check(result, !outcome.is_answered, "no answer", outcome.is_answered ? Quoted(outcome.answer.data) : "");
  } else if (!outcome.is_answered) {
    Finish(result, outcome.problem);
  } else if (step.kind == StepKind::kWithin) {
    Check(result, outcome.answer.took <= step.duration,
          "at most " + std::to_string(step.duration.count()) + " ms", MillisecondsText(outcome.answer.took));
  } else {
    CheckText(result, outcome.answer.data);
  }
}

void ScriptRunner::ExpectAction(StepResult& result) {
  const Step& step = *result.step;
  Check(result, turn_.command.action == step.text, step.text, turn_.command.action);
  if (result.is_ok && step.has_matcher) {
    const std::string data = DescribeData(turn_.command);
    CheckText(result, data);
  }
}

void ScriptRunner::Poll(StepResult& result, const std::string& expression) {
  const auto end = Clock::now() + conversation_.timeout();
  for (;;) {
    const ControlResult seen = conversation_.runtime().Evaluate(Guarded(expression));
    // What can't even be read will not get better.
    if (!seen.is_ok) return Finish(result, seen.error);
    const std::string value = TakeGuarded(seen.value, result.problem);
    if (result.problem.empty()) {
      CheckText(result, value);
    } else {
      Finish(result, result.problem);
    }
    if (result.is_ok) {
      result.shown = value;
      return;
    }
    if (Clock::now() >= end || IsInterrupted()) return;
    WaitUntil([] { return false; }, kPollInterval);
  }
}

void ScriptRunner::Show(StepResult& result) {
  Poll(result, SelectorExpression(result.step->text));
}

void ScriptRunner::Value(StepResult& result) {
  Poll(result, result.step->text);
}

bool ScriptRunner::AskItems(StepResult& result) {
  std::string problem;
  items_ = conversation_.AskItems(problem);
  are_items_fresh_ = items_.has_value();
  Finish(result, problem);
  return are_items_fresh_;
}

// The page may still be on its way to what is expected, so it is asked again for a while.
void ScriptRunner::CheckItems(StepResult& result) {
  constexpr auto kItemsInterval = std::chrono::milliseconds(100);
  const auto end = Clock::now() + conversation_.timeout();
  const bool is_change = result.step->kind == StepKind::kItemChange;
  if (is_change) items_before_ = std::exchange(items_, {});
  if ((!are_items_fresh_ || !items_) && !AskItems(result)) return;
  for (;;) {
    result.problem.clear();
    CheckItem(result, *items_);
    const bool can_change = !is_change || items_before_.has_value();
    if (result.is_ok || !can_change || Clock::now() >= end || IsInterrupted()) return;
    WaitUntil([] { return false; }, kItemsInterval);
    if (!AskItems(result)) return;
  }
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
    return CheckText(result, found->title);
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

}  // namespace corvis::kit
