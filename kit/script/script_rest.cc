// Finds out how far a script was reported, and reports the rest.
#include "script/script_rest.h"

#include <utility>

#include "script/runner.h"

namespace corvis::kit {

namespace {

// How far a script's events have come.
struct Progress {
  // The number of tests that are done.
  size_t tests = 0;
  // What was reported of the test after those.
  size_t steps = 0;
  bool is_test_started = false;
};

Progress ProgressOf(const std::vector<Event>& events) {
  Progress progress;
  for (const Event& event : events) {
    if (std::get_if<TestStarted>(&event) != nullptr) progress.is_test_started = true;
    if (std::get_if<StepDone>(&event) != nullptr) ++progress.steps;
    if (std::get_if<TestDone>(&event) != nullptr) progress = {progress.tests + 1, 0, false};
  }
  return progress;
}

// Without the first `reported` steps.
void AddSteps(std::vector<Event>& events, const ScriptTest& test, size_t reported, std::string& failure) {
  TestDone done{test.place, test.name, TestOutcome::kSkipped, 1, {}};
  for (const Step& step : test.steps) {
    if (step.role == StepRole::kNote) continue;
    if (reported > 0) {
      --reported;
      continue;
    }
    StepDone missing = SkippedStep(step);
    if (!failure.empty()) {
      missing.status = StepStatus::kFailed;
      missing.failure = Failure{std::exchange(failure, {}), "", "", {}, ""};
      done.outcome = TestOutcome::kFailed;
    }
    events.emplace_back(std::move(missing));
  }
  events.emplace_back(std::move(done));
}

}  // namespace

void AddRest(std::vector<Event>& events, const VoiceScript& script, std::string failure) {
  if (events.empty()) events.emplace_back(ScriptStarted{script.file});
  Progress progress = ProgressOf(events);
  for (size_t i = progress.tests; i < script.tests.size(); ++i) {
    const ScriptTest& test = script.tests[i];
    if (test.name && !progress.is_test_started) events.emplace_back(TestStarted{test.place, *test.name, 1});
    AddSteps(events, test, progress.steps, failure);
    progress = {};
  }
  events.emplace_back(ScriptDone{script.file, {}});
}

}  // namespace corvis::kit
