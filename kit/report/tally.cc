// Counts the steps and tests of a run.
#include "report/tally.h"

namespace corvis::kit {

void Tally::Take(const Event& event) {
  if (const auto* step = std::get_if<StepDone>(&event); step != nullptr && !step->is_replaced) {
    ++(step->status == StepStatus::kPassed   ? steps_.passed
       : step->status == StepStatus::kFailed ? steps_.failed
                                             : steps_.skipped);
  } else if (const auto* test = std::get_if<TestDone>(&event)) {
    ++(test->outcome == TestOutcome::kPassed    ? tests_.passed
       : test->outcome == TestOutcome::kFailed  ? tests_.failed
       : test->outcome == TestOutcome::kSkipped ? tests_.skipped
                                                : tests_.flaky);
  }
}

}  // namespace corvis::kit
