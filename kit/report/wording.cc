// Formats failures and coverage as sentences.
#include "report/wording.h"

#include <fmt/format.h>

#include <utility>
#include <vector>

#include "output/text_forms.h"

namespace corvis::kit {

namespace {

std::string Line(const char* heading, const std::vector<std::string>& names) {
  return names.empty() ? "" : fmt::format("{} {}\n", heading, fmt::join(names, " "));
}

}  // namespace

std::string Describe(const Failure& failure) {
  if (failure.expected.empty()) return failure.message;
  return fmt::format("{}{}Expected {}, not {}.", failure.message, failure.message.empty() ? "" : " ",
                     failure.expected, failure.actual);
}

std::string Describe(const CoverageMeasured& coverage) {
  const size_t registered = coverage.spoken.size() + coverage.unspoken.size();
  return fmt::format("Voice coverage: {} % ({} of {} registered actions were spoken)\n", coverage.percent,
                     coverage.spoken.size(), registered) +
         Line("Spoken:", coverage.spoken) + Line("Not spoken:", coverage.unspoken) +
         Line("Answered only not_support:", coverage.refused) +
         fmt::format("Callbacks that the application does not have: {} (--json names them)\n",
                     coverage.missing_callbacks.size());
}

void FailedAttempts::Note(const StepDone& step) {
  if (!step.is_replaced || !step.failure) return;
  const std::string failure = Located(step.place, corvis::kit::Describe(*step.failure));
  lines_ += fmt::format("Attempt {} failed: {}\n", step.attempt, ForTerminal(failure));
}

std::string FailedAttempts::Describe(const TestDone& test) {
  const std::string lines = std::exchange(lines_, {});
  const bool is_flaky = test.outcome == TestOutcome::kFlaky;
  return lines + (is_flaky ? fmt::format("Flaky: attempt {} passed.\n", test.attempts) : "");
}

}  // namespace corvis::kit
