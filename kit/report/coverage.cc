// Collecting and telling.
#include "report/coverage.h"

namespace corvis::kit {

namespace {

std::string Line(const std::string& heading, const std::vector<std::string>& names) {
  if (names.empty()) return "";
  std::string line = heading;
  for (const std::string& name : names) line.append(" ").append(name);
  return line + "\n";
}

}  // namespace

void Coverage::OnStep(const VoiceScript& /*script*/, const StepResult& result) {
  seen_.insert(registered_.own().begin(), registered_.own().end());
  if (result.turn == nullptr || !result.turn->outcome.is_answered) return;
  const std::string& action = result.turn->command.action;
  answered_.insert(action);
  if (result.turn->outcome.answer.data != "not_support") supported_.insert(action);
}

CoverageReport Coverage::Report() const {
  CoverageReport report;
  for (const ActionInfo& info : Actions()) {
    const std::string name(info.name);
    if (info.callback.empty()) continue;
    if (seen_.count(name) == 0) {
      report.missing.emplace_back(info.callback);
      continue;
    }
    const bool is_spoken = answered_.count(name) == 1;
    (is_spoken ? report.spoken : report.unspoken).push_back(name);
    if (is_spoken && supported_.count(name) == 0) report.refused.push_back(name);
  }
  constexpr size_t kWhole = 100;
  if (!seen_.empty()) report.percent = static_cast<int>(kWhole * report.spoken.size() / seen_.size());
  return report;
}

std::string Describe(const CoverageReport& report) {
  const size_t registered = report.spoken.size() + report.unspoken.size();
  std::string text = "Voice coverage: " + std::to_string(report.percent) + " % (" +
                     std::to_string(report.spoken.size()) + " of " + std::to_string(registered) +
                     " registered actions were spoken)\n";
  return text + Line("Spoken:", report.spoken) + Line("Not spoken:", report.unspoken) +
         Line("Answered only not_support:", report.refused) +
         "Callbacks that the application does not have: " + std::to_string(report.missing.size()) +
         " (--json names them)\n";
}

}  // namespace corvis::kit
