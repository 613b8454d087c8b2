// Converts events to JSON objects and back. The fields of an event are listed once, for both directions.
#include "report/json_forms.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>
#include <vector>

namespace corvis::kit {

namespace {

using Json = nlohmann::ordered_json;
using std::chrono::microseconds;

constexpr std::pair<StepStatus, const char*> kStatuses[] = {
    {StepStatus::kPassed, "passed"}, {StepStatus::kFailed, "failed"}, {StepStatus::kSkipped, "skipped"}};
constexpr std::pair<TestOutcome, const char*> kOutcomes[] = {{TestOutcome::kPassed, "passed"},
                                                             {TestOutcome::kFailed, "failed"},
                                                             {TestOutcome::kSkipped, "skipped"},
                                                             {TestOutcome::kFlaky, "flaky"}};

// The JSON of a field's value: times are milliseconds, with microsecond resolution.
template <typename T>
const T& JsonOf(const T& value) {
  return value;
}
double JsonOf(microseconds time) {
  return std::chrono::duration<double, std::milli>(time).count();
}
template <typename Enum, size_t count>
const char* NameIn(const std::pair<Enum, const char*> (&names)[count], Enum value) {
  return std::find_if(std::begin(names), std::end(names),
                      [value](const auto& row) { return row.first == value; })
      ->second;
}
const char* JsonOf(StepStatus status) {
  return NameIn(kStatuses, status);
}
const char* JsonOf(TestOutcome outcome) {
  return NameIn(kOutcomes, outcome);
}

Json JsonOf(const std::vector<SeenItem>& items);

// The same the other way. nlohmann's exceptions and out_of_range mean that the value is none.
template <typename T>
void Get(const Json& json, T& value) {
  json.get_to(value);
}
void Get(const Json& json, microseconds& time) {
  constexpr double kLongest = 1e12;
  time = microseconds(std::llround(std::clamp(json.get<double>() * 1000, 0.0, kLongest)));
}
template <typename Enum, size_t count>
void FindIn(const std::pair<Enum, const char*> (&names)[count], const Json& json, Enum& value) {
  const auto* const row = std::find_if(std::begin(names), std::end(names),
                                       [&json](const auto& name) { return json == name.second; });
  if (row == std::end(names)) throw std::out_of_range("status");
  value = row->first;
}
void Get(const Json& json, StepStatus& status) {
  FindIn(kStatuses, json, status);
}
void Get(const Json& json, TestOutcome& outcome) {
  FindIn(kOutcomes, json, outcome);
}
void Get(const Json& json, std::vector<SeenItem>& items);

// Writes the fields of an event.
class Writer {
 public:
  explicit Writer(Json& form) : form_(form) {}

  template <typename T>
  void Required(const char* name, const T& value) {
    form_[name] = JsonOf(value);
  }
  // A field that is left out if it has its initial value.
  template <typename T>
  void Optional(const char* name, const T& value, const T& initial = T()) {
    if (value != initial) Required(name, value);
  }
  void Optional(const char* name, const std::optional<std::string>& value) {
    if (value) Required(name, *value);
  }
  // Whether there is a part, which has the field `name` if it is there.
  template <typename T>
  bool Has(const char* /*name*/, const std::optional<T>& part) {
    return part.has_value();
  }
  bool Has(const char* /*name*/, bool is_there) const { return is_there; }

 private:
  Json& form_;
};

// Reads the fields of an event.
class Reader {
 public:
  explicit Reader(const Json& form) : form_(form) {}

  template <typename T>
  void Required(const char* name, T& value) {
    Get(form_.at(name), value);
  }
  template <typename T>
  void Optional(const char* name, T& value, const T& /*initial*/ = T()) {
    if (form_.contains(name)) Required(name, value);
  }
  void Optional(const char* name, std::optional<std::string>& value) {
    if (form_.contains(name)) Required(name, value.emplace());
  }
  template <typename T>
  bool Has(const char* name, std::optional<T>& part) {
    if (form_.contains(name)) part.emplace();
    return part.has_value();
  }
  bool Has(const char* name, bool /*is_there*/) const { return form_.contains(name); }

 private:
  const Json& form_;
};

template <typename Fields>
void List(Fields& fields, ScriptPlace& place) {
  fields.Required("file", place.file);
  fields.Required("line", place.line);
  fields.Required("column", place.column);
}
template <typename Fields>
void List(Fields& fields, Exchange& exchange) {
  fields.Required("said", exchange.said);
  if (!fields.Has("action", !exchange.action.empty())) return;
  fields.Required("action", exchange.action);
  fields.Required("data", exchange.data);
  exchange.is_answered = fields.Has("answer", exchange.is_answered);
  if (!exchange.is_answered) return;
  fields.Required("answer", exchange.answer);
  fields.Required("answer_ms", exchange.answer_time);
  fields.Required("pieces", exchange.pieces);
}
template <typename Fields>
void List(Fields& fields, Failure& failure) {
  fields.Optional("message", failure.message);
  if (fields.Has("expected", !failure.expected.empty())) {
    fields.Required("expected", failure.expected);
    fields.Required("actual", failure.actual);
  }
  fields.Required("console", failure.console);
  fields.Optional("screenshot", failure.screenshot);
}

template <typename Fields>
void List(Fields& fields, RunStarted& run) {
  int format = 1;
  fields.Required("format", format);
  if (format != 1) throw std::out_of_range("format");
  fields.Required("scripts", run.scripts);
  fields.Required("steps", run.steps);
}
template <typename Fields>
void List(Fields& fields, ScriptStarted& script) {
  fields.Required("file", script.file);
}
template <typename Fields>
void List(Fields& fields, TestStarted& test) {
  List(fields, test.place);
  fields.Required("text", test.name);
  fields.Optional("attempt", test.attempt, 1);
}
template <typename Fields>
void List(Fields& fields, NoteReached& note) {
  List(fields, note.place);
  fields.Required("text", note.text);
}
template <typename Fields>
void List(Fields& fields, StepDone& step) {
  List(fields, step.place);
  fields.Required("statement", step.statement);
  fields.Required("source", step.source);
  fields.Required("status", step.status);
  fields.Required("ms", step.duration);
  if (fields.Has("said", step.exchange)) List(fields, *step.exchange);
  fields.Optional("shown", step.shown);
  if (fields.Has("console", step.failure)) List(fields, *step.failure);
  fields.Optional("attempt", step.attempt, 1);
  fields.Optional("replaced", step.is_replaced);
}
template <typename Fields>
void List(Fields& fields, TestDone& test) {
  List(fields, test.place);
  fields.Optional("text", test.name);
  fields.Required("status", test.outcome);
  fields.Required("attempts", test.attempts);
  fields.Required("ms", test.duration);
}
template <typename Fields>
void List(Fields& fields, ScriptDone& script) {
  fields.Required("file", script.file);
  fields.Required("ms", script.duration);
}
template <typename Fields>
void List(Fields& fields, ActionsRegistered& registered) {
  fields.Required("actions", registered.actions);
}
template <typename Fields>
void List(Fields& fields, ConsoleWritten& line) {
  fields.Required("level", line.level);
  fields.Required("text", line.text);
  fields.Required("source", line.source);
}
template <typename Fields>
void List(Fields& fields, RequestMade& request) {
  fields.Required("url", request.url);
  fields.Required("kind", request.kind);
  fields.Required("status", request.status);
  fields.Required("ms", request.duration);
}
template <typename Fields>
void List(Fields& fields, SeenItem& item) {
  fields.Required("number", item.number);
  fields.Required("title", item.title);
  fields.Required("x", item.x);
  fields.Required("y", item.y);
  fields.Required("width", item.width);
  fields.Required("height", item.height);
  fields.Optional("focused", item.is_focused);
  fields.Optional("visible", item.is_visible, true);
}
template <typename Fields>
void List(Fields& fields, PageSeen& seen) {
  fields.Required("width", seen.width);
  fields.Required("height", seen.height);
  fields.Required("items", seen.items);
  fields.Optional("picture", seen.picture.id);
  fields.Optional("image", seen.picture.url);
}
template <typename Fields>
void List(Fields& /*fields*/, PageCrashed& /*crash*/) {}
template <typename Fields>
void List(Fields& /*fields*/, ApplicationClosed& /*closed*/) {}
template <typename Fields>
void List(Fields& fields, CoverageMeasured& coverage) {
  fields.Required("percent", coverage.percent);
  fields.Required("spoken", coverage.spoken);
  fields.Required("unspoken", coverage.unspoken);
  fields.Required("not_support", coverage.refused);
  fields.Required("missing_callbacks", coverage.missing_callbacks);
}
template <typename Fields>
void List(Fields& fields, RunAborted& abort) {
  fields.Required("message", abort.message);
}
template <typename Fields>
void List(Fields& fields, RunEnded& end) {
  fields.Required("status", end.status);
  fields.Required("passed", end.totals.passed);
  fields.Required("failed", end.totals.failed);
  fields.Required("skipped", end.totals.skipped);
  fields.Required("ms", end.duration);
  // Absent in the events of earlier versions.
  fields.Optional("tests_passed", end.tests.passed, -1);
  fields.Optional("tests_failed", end.tests.failed, -1);
  fields.Optional("tests_skipped", end.tests.skipped, -1);
  fields.Optional("tests_flaky", end.tests.flaky, -1);
}

Json JsonOf(const std::vector<SeenItem>& items) {
  Json list = Json::array();
  for (SeenItem item : items) {
    Writer writer(list.emplace_back(Json::object()));
    List(writer, item);
  }
  return list;
}
void Get(const Json& json, std::vector<SeenItem>& items) {
  for (const Json& form : json) {
    Reader reader(form);
    List(reader, items.emplace_back());
  }
}

const std::vector<std::pair<const char*, Event>>& NamedEvents() {
  static const std::vector<std::pair<const char*, Event>> kEvents = {
      {"start", RunStarted{}},
      {"script", ScriptStarted{}},
      {"test", TestStarted{}},
      {"note", NoteReached{}},
      {"step", StepDone{}},
      {"test-end", TestDone{}},
      {"script-end", ScriptDone{}},
      {"registered", ActionsRegistered{}},
      {"console", ConsoleWritten{}},
      {"request", RequestMade{}},
      {"view", PageSeen{}},
      {"crash", PageCrashed{}},
      {"closed", ApplicationClosed{}},
      {"coverage", CoverageMeasured{}},
      {"abort", RunAborted{}},
      {"end", RunEnded{}},
  };
  return kEvents;
}

template <typename Holds>
auto FindEvent(const Holds& holds) {
  return std::find_if(NamedEvents().begin(), NamedEvents().end(), holds);
}

}  // namespace

nlohmann::ordered_json JsonFormOf(const Event& event) {
  const auto row = FindEvent([&event](const auto& named) { return named.second.index() == event.index(); });
  Json form = {{"event", row->first}};
  Writer writer(form);
  std::visit([&writer](auto kind) { List(writer, kind); }, event);
  return form;
}

Result<std::optional<Event>> EventOfJson(const std::string& line) {
  const auto failure =
      Fail("Expected a JSON event, for example {\"event\":\"script\",\"file\":\"a.voice\"}.");
  const Json form = Json::parse(line, nullptr, false);
  if (!form.is_object() || !form.contains("event")) return failure;
  const auto row = FindEvent([&form](const auto& named) { return form["event"] == named.first; });
  if (row == NamedEvents().end()) return std::optional<Event>();
  Event event = row->second;
  try {
    Reader reader(form);
    std::visit([&reader](auto& kind) { List(reader, kind); }, event);
  } catch (const std::exception& /*a field is missing, or is of another type*/) {
    return Fail("The event \"" + std::string(row->first) +
                "\" does not have the fields that it should have; was it written by corvis test-app --json?");
  }
  return std::optional<Event>(std::move(event));
}

}  // namespace corvis::kit
