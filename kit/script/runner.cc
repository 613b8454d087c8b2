// Runs tests step by step and emits an event for each.
#include "script/runner.h"

#include <algorithm>
#include <utility>

#include "script/screenshots.h"
#include "service/main_loop.h"

namespace corvis::kit {

namespace {

// The page's last console lines.
std::vector<std::string> LastLines(const Conversation& conversation) {
  constexpr size_t kMostLines = 10;
  const auto& lines = conversation.console();
  const auto count = static_cast<std::ptrdiff_t>(std::min(lines.size(), kMostLines));
  return {lines.end() - count, lines.end()};
}

void AddSentence(std::string& message, const std::string& sentence) {
  message += (message.empty() ? "" : " ") + sentence;
}

}  // namespace

StepDone SkippedStep(const Step& step) {
  StepDone done;
  done.place = step.place;
  done.statement = step.statement;
  done.source = step.source;
  done.status = StepStatus::kSkipped;
  return done;
}

RunStarted BeginningOf(const std::vector<VoiceScript>& scripts) {
  RunStarted started;
  for (const VoiceScript& script : scripts) {
    started.scripts.push_back(script.file);
    for (const ScriptTest& test : script.tests) {
      for (const Step& step : test.steps) started.steps += step.role == StepRole::kNote ? 0 : 1;
    }
  }
  return started;
}

ScriptRunner::ScriptRunner(Conversation& conversation, EventSink& events, RunnerOptions options)
    : conversation_(conversation),
      events_(events),
      options_(std::move(options)),
      session_(conversation, options_.pace),
      views_(options_.emits_views ? std::make_unique<PageViews>(conversation, events) : nullptr),
      timeout_(conversation.timeout()) {}

const Error* ScriptRunner::Obstacle() const {
  const bool is_as_expected = has_ended_as_expected_ && !is_over_ && HasApplicationClosed();
  return is_as_expected ? nullptr : WhyWaitsEnd();
}

void ScriptRunner::Run(const VoiceScript& script) {
  const auto begin = Clock::now();
  events_.Take(ScriptStarted{script.file});
  session_.items.Forget();
  conversation_.set_timeout(timeout_);
  ready_ = PrepareScript();
  for (const ScriptTest& test : script.tests) {
    session_.dialogue.Begin();
    if (test.name) {
      events_.Take(TestStarted{test.place, *test.name});
      conversation_.ForgetConsole();
      if (ready_) ready_ = PrepareTest();
    }
    RunTest(test, &test == &script.tests.back());
  }
  session_.dialogue.DropLater();
  AwaitClosing();
  ReportPage();
  events_.Take(
      ScriptDone{script.file, std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin)});
}

StepDone ScriptRunner::RunAlone(const Step& step) {
  session_.next = nullptr;
  StepDone done = RunStep(step, true);
  // A page that doesn't respond has no further lines.
  static_cast<void>(conversation_.runtime().Sync());
  return done;
}

// If the application ends with its last answer, or at a timer that is due then, wait for that, so that this
// script reports it.
void ScriptRunner::AwaitClosing() {
  constexpr auto kTimers = std::chrono::milliseconds(5);
  constexpr auto kDeparture = std::chrono::seconds(2);
  if (HappensWithin([] { return IsInterrupted(); }, kTimers)) return;
  const bool is_there = conversation_.runtime().Sync().has_value();
  if (!is_there) HappensWithin([] { return IsInterrupted(); }, kDeparture);
}

Status ScriptRunner::PrepareScript() {
  if (std::exchange(is_first_script_, false)) return {};
  if (has_ended_as_expected_ && Obstacle() == nullptr && options_.start_again) {
    has_ended_as_expected_ = false;
    is_closing_reported_ = false;
    conversation_.ForgetConsole();
    return options_.start_again();
  }
  if (IsInterrupted()) return {};
  conversation_.ForgetConsole();
  return conversation_.BeginAnew();
}

Status ScriptRunner::PrepareTest() {
  if (std::exchange(settled_crashes_, conversation_.crashes()) == conversation_.crashes()) return {};
  return conversation_.WaitForPage(conversation_.timeout());
}

void ScriptRunner::RunTest(const ScriptTest& test, bool is_last) {
  bool has_failed = false;
  TestDone test_done{test.place, test.name, TestOutcome::kSkipped, 1, {}};
  if (views_ && !is_over_) views_->Begin();
  for (size_t i = 0; i < test.steps.size(); ++i) {
    const Step& step = test.steps[i];
    if (step.role == StepRole::kNote) {
      events_.Take(NoteReached{step.place, step.text});
      continue;
    }
    StepDone done = SkippedStep(step);
    if (!has_failed && !is_over_) {
      session_.next = i + 1 < test.steps.size() ? &test.steps[i + 1] : nullptr;
      done = RunStep(step, is_last && session_.next == nullptr);
      if (views_) views_->Listen();
    }
    has_failed = has_failed || done.status == StepStatus::kFailed;
    if (done.status == StepStatus::kPassed) test_done.outcome = TestOutcome::kPassed;
    test_done.duration += done.duration;
    const bool is_run = done.status != StepStatus::kSkipped;
    events_.Take(std::move(done));
    if (views_ && is_run) LookAfter(step, has_failed);
  }
  if (has_failed) test_done.outcome = TestOutcome::kFailed;
  events_.Take(std::move(test_done));
}

void ScriptRunner::LookAfter(const Step& step, bool has_failed) {
  const bool may_change = step.role == StepRole::kSpeaks || step.role == StepRole::kActs;
  if (may_change || has_failed) {
    views_->Look();
  } else {
    views_->LookForChange();
  }
}

StepDone ScriptRunner::RunStep(const Step& step, bool is_last) {
  StepDone done = SkippedStep(step);
  done.status = StepStatus::kPassed;
  const auto begin = Clock::now();
  const Status ready = std::exchange(ready_, Status());
  Verdict verdict = ready ? Do(step, is_last) : Verdict(ready);
  done.duration = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
  if (HasEndedAsExpected(step)) {
    // `expect closed` may be the next step; the end of the application must not fail the current one.
    verdict = {};
    has_ended_as_expected_ = step.expects_closed;
  } else if (IsInterrupted()) {
    verdict = Failed(WhyWaitsEnd()->message);
    is_over_ = true;
  }
  ReportPage();
  done.exchange = std::exchange(session_.exchange, {});
  std::string shown = std::exchange(session_.shown, "");
  if (verdict) {
    done.shown = std::move(shown);
  } else {
    done.status = StepStatus::kFailed;
    done.failure = std::move(verdict).error();
    Document(done);
  }
  return done;
}

bool ScriptRunner::HasEndedAsExpected(const Step& step) const {
  const bool is_next = session_.next != nullptr && session_.next->expects_closed;
  return HasApplicationClosed() && !has_ended_as_expected_ && (step.expects_closed || is_next);
}

Verdict ScriptRunner::Do(const Step& step, bool is_last) {
  if (step.role == StepRole::kActs || step.role == StepRole::kSpeaks) session_.items.Expire();
  if (const Status later = session_.dialogue.LaterFailure(); !later) return later;
  Verdict verdict = step.run(session_);
  if (!verdict || !is_last) return verdict;
  // Delayed messages are sent before the script ends; if that fails, its last step fails.
  session_.dialogue.WaitForLater();
  return session_.dialogue.LaterFailure();
}

void ScriptRunner::Document(StepDone& done) {
  Failure& failure = *done.failure;
  // Waits for pending console lines. If the page hangs, this replaces it for the tests that follow.
  const Status recovered = conversation_.Recover();
  if (!recovered) AddSentence(failure.message, recovered.error().message);
  const std::string exception = session_.dialogue.Exception();
  if (!exception.empty()) AddSentence(failure.message, "The callback threw: " + exception);
  failure.console = LastLines(conversation_);
  if (options_.screenshot_folder.empty() || is_over_ || !recovered) return;
  const auto picture = SaveScreenshot(conversation_, options_.screenshot_folder, done.place);
  if (picture) {
    failure.screenshot = *picture;
  } else {
    AddSentence(failure.message, "No screenshot was saved: " + picture.error().message);
  }
}

void ScriptRunner::ReportPage() {
  const std::vector<std::string>& actions = conversation_.registered().own();
  if (actions != reported_actions_) {
    reported_actions_ = actions;
    events_.Take(ActionsRegistered{actions});
  }
  if (HasApplicationClosed() && !std::exchange(is_closing_reported_, true)) events_.Take(ApplicationClosed{});
  for (; reported_crashes_ < conversation_.crashes(); ++reported_crashes_) events_.Take(PageCrashed{});
}

}  // namespace corvis::kit
