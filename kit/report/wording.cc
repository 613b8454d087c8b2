// Formats failures and coverage as sentences.
#include "report/wording.h"

#include <fmt/format.h>

#include <vector>

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

}  // namespace corvis::kit
