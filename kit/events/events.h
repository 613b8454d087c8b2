// The one stream of events of a run. What drives a run makes them, reports are made from them, and neither
// knows the other. docs/voice-scripts.md has their outer form, "JSON events". Events are plain values: they
// may be kept and passed on later.
#ifndef CORVIS_KIT_EVENTS_EVENTS_H_
#define CORVIS_KIT_EVENTS_EVENTS_H_

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace corvis::kit {

// A place in a script, counted from 1. Columns count bytes.
struct ScriptPlace {
  std::string file;
  int line = 1;
  int column = 1;
};

// "file:line:column: message".
inline std::string Located(const ScriptPlace& place, const std::string& message) {
  return place.file + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": " + message;
}

// The first event of every run, also of one that can't begin.
struct RunStarted {
  std::vector<std::string> scripts;
  // In all scripts; tests and notes are no steps.
  size_t steps = 0;
};

struct ScriptStarted {
  std::string file;
};

struct TestStarted {
  ScriptPlace place;
  std::string name;
};

struct NoteReached {
  ScriptPlace place;
  std::string text;
};

// What was said or sent, what it became, and what came back.
struct Exchange {
  // The phrase or the raw command.
  std::string said;
  // Empty when nothing was sent.
  std::string action;
  // For people: a bundle's data is the text of its pairs.
  std::string data;
  bool is_answered = false;
  std::string answer;
  // To the answer's last piece.
  std::chrono::microseconds answer_time{0};
  int pieces = 1;
};

// Why a step failed.
struct Failure {
  // May be empty when there are the next two.
  std::string message;
  // Of a step that compares: a matcher as it is written in a script, and a text in quotation marks. Both or
  // neither.
  std::string expected;
  std::string actual;
  // The page's last console lines, "level: text", oldest first.
  std::vector<std::string> console;
  // The picture's file; empty for none.
  std::string screenshot;
};

enum class StepStatus { kPassed, kFailed, kSkipped };

struct StepDone {
  ScriptPlace place;
  // The statement's first word.
  std::string statement;
  // The line as it is in the script.
  std::string source;
  StepStatus status = StepStatus::kPassed;
  std::chrono::microseconds duration{0};
  // Of a step that says something.
  std::optional<Exchange> exchange;
  // What the page showed, for a step that looked and passed.
  std::string shown;
  // When it failed, and only then.
  std::optional<Failure> failure;
};

// The page has registered these actions by its callbacks, in place of those that it had before.
struct ActionsRegistered {
  std::vector<std::string> actions;
};

// The page, or the script API in it ("api"), wrote a line to the console.
struct ConsoleWritten {
  std::string level;
  std::string text;
  // "page" or "api".
  std::string source;
};

// The page's process crashed; the runtime loads the page again.
struct PageCrashed {};

// The application ended by itself, or its window was closed.
struct ApplicationClosed {};

// How much of what the page registered was spoken. Actions are in the order of the table of actions.
struct CoverageMeasured {
  // Spoken and answered, or not.
  std::vector<std::string> spoken;
  std::vector<std::string> unspoken;
  // Spoken ones whose every answer was "not_support".
  std::vector<std::string> refused;
  // The callbacks that the application does not have, by their property names.
  std::vector<std::string> missing_callbacks;
  // Of the registered actions; 100 when there are none.
  int percent = 100;
};

// The run can't begin, or can't go on.
struct RunAborted {
  // A sentence.
  std::string message;
};

struct Totals {
  int passed = 0;
  int failed = 0;
  int skipped = 0;
};

// The last event of every run.
struct RunEnded {
  // The exit status of the process.
  int status = 0;
  // Of steps.
  Totals totals;
  std::chrono::microseconds duration{0};
};

using Event =
    std::variant<RunStarted, ScriptStarted, TestStarted, NoteReached, StepDone, ActionsRegistered,
                 ConsoleWritten, PageCrashed, ApplicationClosed, CoverageMeasured, RunAborted, RunEnded>;

// Takes the events of a run, in their order.
class EventSink {
 public:
  EventSink() = default;
  virtual ~EventSink() = default;
  EventSink(const EventSink&) = delete;
  EventSink& operator=(const EventSink&) = delete;

  virtual void Take(const Event& event) = 0;
};

// Hands each event on to several sinks, in the order in which they were added.
class EventFanOut : public EventSink {
 public:
  // The sink must live as long as this takes events.
  void Add(EventSink& sink) { sinks_.push_back(&sink); }

  void Take(const Event& event) override {
    for (EventSink* sink : sinks_) sink->Take(event);
  }

 private:
  std::vector<EventSink*> sinks_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_EVENTS_EVENTS_H_
