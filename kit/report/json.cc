// The events.
#include "report/json.h"

#include <nlohmann/json.hpp>

#include "report/coverage.h"

namespace corvis::kit {

namespace {

using Json = nlohmann::ordered_json;

void Print(std::FILE* out, const Json& event) {
  const std::string line = event.dump(-1, ' ', false, Json::error_handler_t::replace);
  std::fprintf(out, "%s\n", line.c_str());
  std::fflush(out);
}

// Milliseconds to the microsecond.
double Milliseconds(std::chrono::nanoseconds time) {
  constexpr double kThousand = 1000;
  return static_cast<double>(std::chrono::duration_cast<std::chrono::microseconds>(time).count()) / kThousand;
}

void AddTurn(Json& event, const Turn& turn) {
  event["said"] = turn.said;
  if (!turn.is_sent) return;
  event["action"] = turn.command.action;
  event["data"] = DescribeData(turn.command);
  if (!turn.outcome.is_answered) return;
  event["answer"] = turn.outcome.answer.data;
  event["answer_ms"] = Milliseconds(turn.outcome.answer.took);
  event["pieces"] = turn.outcome.answer.pieces;
}

void AddFailure(Json& event, const StepResult& result) {
  if (!result.problem.empty()) event["message"] = result.problem;
  if (!result.expected.empty()) {
    event["expected"] = result.expected;
    event["actual"] = result.actual;
  }
  event["console"] = result.console;
  if (!result.screenshot.empty()) event["screenshot"] = result.screenshot;
}

}  // namespace

void JsonReporter::OnStart(const std::vector<VoiceScript>& scripts) {
  Json files = Json::array();
  size_t steps = 0;
  for (const VoiceScript& script : scripts) {
    files.push_back(script.file);
    for (const Step& step : script.steps) steps += IsHeading(step.kind) ? 0 : 1;
  }
  Print(out_, {{"event", "start"}, {"format", 1}, {"scripts", files}, {"steps", steps}});
}

void JsonReporter::OnScript(const VoiceScript& script) {
  Print(out_, {{"event", "script"}, {"file", script.file}});
}

void JsonReporter::OnStep(const VoiceScript& script, const StepResult& result) {
  const Step& step = *result.step;
  Json event = {{"event", IsHeading(step.kind) ? NameOf(step.kind) : "step"},
                {"file", script.file},
                {"line", step.place.line},
                {"column", step.place.column}};
  if (IsHeading(step.kind)) {
    event["text"] = step.text;
    return Print(out_, event);
  }
  event["statement"] = NameOf(step.kind);
  event["source"] = step.source;
  event["status"] = result.is_skipped ? "skipped" : result.is_ok ? "passed" : "failed";
  event["ms"] = Milliseconds(result.took);
  if (result.turn != nullptr) AddTurn(event, *result.turn);
  if (!result.is_ok) AddFailure(event, result);
  Print(out_, event);
}

void JsonReporter::OnAbort(const std::string& sentence) {
  Print(out_, {{"event", "abort"}, {"message", sentence}});
}

void JsonReporter::OnCoverage(const CoverageReport& report) {
  Print(out_, {{"event", "coverage"},
               {"percent", report.percent},
               {"spoken", report.spoken},
               {"unspoken", report.unspoken},
               {"not_support", report.refused},
               {"missing_callbacks", report.missing}});
}

void JsonReporter::OnEnd(const RunTotals& totals, int status) {
  Print(out_, {{"event", "end"},
               {"status", status},
               {"passed", totals.passed},
               {"failed", totals.failed},
               {"skipped", totals.skipped},
               {"ms", Milliseconds(Clock::now() - begin_)}});
}

}  // namespace corvis::kit
