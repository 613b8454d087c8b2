// Converts events to JSON objects.
#include "report/json_forms.h"

#include <nlohmann/json.hpp>

namespace corvis::kit {

namespace {

using Json = nlohmann::ordered_json;

// Converts to milliseconds, with microsecond resolution.
double Milliseconds(std::chrono::microseconds time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

Json AtPlace(const char* event, const ScriptPlace& place) {
  return {{"event", event}, {"file", place.file}, {"line", place.line}, {"column", place.column}};
}

const char* NameOf(StepStatus status) {
  switch (status) {
    case StepStatus::kPassed:
      return "passed";
    case StepStatus::kFailed:
      return "failed";
    case StepStatus::kSkipped:
      break;
  }
  return "skipped";
}

void Add(Json& event, const Exchange& exchange) {
  event["said"] = exchange.said;
  if (exchange.action.empty()) return;
  event["action"] = exchange.action;
  event["data"] = exchange.data;
  if (!exchange.is_answered) return;
  event["answer"] = exchange.answer;
  event["answer_ms"] = Milliseconds(exchange.answer_time);
  event["pieces"] = exchange.pieces;
}

void Add(Json& event, const Failure& failure) {
  if (!failure.message.empty()) event["message"] = failure.message;
  if (!failure.expected.empty()) {
    event["expected"] = failure.expected;
    event["actual"] = failure.actual;
  }
  event["console"] = failure.console;
  if (!failure.screenshot.empty()) event["screenshot"] = failure.screenshot;
}

// The external form of each event; null for events that are not reported.
Json FormOf(const RunStarted& run) {
  return {{"event", "start"}, {"format", 1}, {"scripts", run.scripts}, {"steps", run.steps}};
}
Json FormOf(const ScriptStarted& script) {
  return {{"event", "script"}, {"file", script.file}};
}
Json FormOf(const TestStarted& test) {
  Json event = AtPlace("test", test.place);
  event["text"] = test.name;
  return event;
}
Json FormOf(const NoteReached& note) {
  Json event = AtPlace("note", note.place);
  event["text"] = note.text;
  return event;
}
Json FormOf(const StepDone& step) {
  Json event = AtPlace("step", step.place);
  event["statement"] = step.statement;
  event["source"] = step.source;
  event["status"] = NameOf(step.status);
  event["ms"] = Milliseconds(step.duration);
  if (step.exchange) Add(event, *step.exchange);
  if (step.failure) Add(event, *step.failure);
  return event;
}
Json FormOf(const CoverageMeasured& coverage) {
  return {{"event", "coverage"},
          {"percent", coverage.percent},
          {"spoken", coverage.spoken},
          {"unspoken", coverage.unspoken},
          {"not_support", coverage.refused},
          {"missing_callbacks", coverage.missing_callbacks}};
}
Json FormOf(const RunAborted& abort) {
  return {{"event", "abort"}, {"message", abort.message}};
}
Json FormOf(const RunEnded& end) {
  return {{"event", "end"},
          {"status", end.status},
          {"passed", end.totals.passed},
          {"failed", end.totals.failed},
          {"skipped", end.totals.skipped},
          {"ms", Milliseconds(end.duration)}};
}
template <typename Other>
Json FormOf(const Other& /*event*/) {
  return nullptr;
}

}  // namespace

nlohmann::ordered_json JsonFormOf(const Event& event) {
  return std::visit([](const auto& kind) -> Json { return FormOf(kind); }, event);
}

}  // namespace corvis::kit
