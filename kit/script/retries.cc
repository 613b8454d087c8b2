// Keeps the events of attempts and passes on those that count.
#include "script/retries.h"

#include <utility>

#include "service/main_loop.h"

namespace corvis::kit {

namespace {

// Numbers an event of an attempt, and marks it if another attempt follows.
void Mark(Event& event, int attempt, bool is_replaced) {
  if (auto* test = std::get_if<TestStarted>(&event)) test->attempt = attempt;
  if (auto* step = std::get_if<StepDone>(&event)) {
    step->attempt = attempt;
    step->is_replaced = is_replaced;
  }
}

}  // namespace

void Retries::Run(ScriptRunner& runner, const VoiceScript& script) {
  if (most_ == 0) return runner.Run(script);
  tests_.assign(script.tests.size(), {});
  duration_ = {};
  VoiceScript rest = script;
  for (long retries = 0;; ++retries) {
    index_ = 0;
    current_ = {};
    runner.Run(rest);
    const size_t count = CountToRetry();
    if (count == 0 || retries == most_ || IsInterrupted()) break;
    rest.tests.assign(script.tests.begin(), script.tests.begin() + static_cast<std::ptrdiff_t>(count));
  }
  Finish(script);
}

void Retries::Take(const Event& event) {
  if (most_ == 0) return events_.Take(event);
  if (std::get_if<ScriptStarted>(&event) != nullptr) return;
  if (const auto* done = std::get_if<ScriptDone>(&event)) {
    duration_ += done->duration;
    // Whatever followed the last test.
    for (Event& last : std::exchange(current_, {}).events) others_.push_back(std::move(last));
    return;
  }
  current_.events.push_back(event);
  if (std::get_if<TestDone>(&event) != nullptr) Keep(index_++, std::exchange(current_, {}));
}

void Retries::Keep(size_t index, TestRun run) {
  Attempts& attempts = tests_[index];
  const bool has_passed = !attempts.empty() && attempts.back().done().outcome == TestOutcome::kPassed;
  const bool has_run = run.done().outcome != TestOutcome::kSkipped;
  if (attempts.empty() || (has_run && !has_passed)) attempts.push_back(std::move(run));
}

size_t Retries::CountToRetry() {
  size_t count = tests_.size();
  while (count > 0 && tests_[count - 1].back().done().outcome != TestOutcome::kFailed) --count;
  return count;
}

void Retries::PassOn(Attempts& attempts) {
  TestDone whole = attempts.back().done();
  whole.attempts = static_cast<int>(attempts.size());
  whole.duration = {};
  if (whole.outcome == TestOutcome::kPassed && whole.attempts > 1) whole.outcome = TestOutcome::kFlaky;
  for (size_t i = 0; i < attempts.size(); ++i) {
    whole.duration += attempts[i].done().duration;
    attempts[i].events.pop_back();
    for (Event& event : attempts[i].events) {
      Mark(event, static_cast<int>(i) + 1, i + 1 < attempts.size());
      events_.Take(event);
    }
  }
  events_.Take(whole);
}

void Retries::Finish(const VoiceScript& script) {
  events_.Take(ScriptStarted{script.file});
  for (Attempts& attempts : tests_) PassOn(attempts);
  for (const Event& event : std::exchange(others_, {})) events_.Take(event);
  events_.Take(ScriptDone{script.file, duration_});
}

}  // namespace corvis::kit
