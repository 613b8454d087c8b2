// The events of a run. The runner emits them and the reports consume them, independently of each other.
// Events are plain values that may be stored. docs/voice-scripts.md ("JSON events") documents their external
// form.
#ifndef CORVIS_KIT_EVENTS_EVENTS_H_
#define CORVIS_KIT_EVENTS_EVENTS_H_

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace corvis::kit {

// A position in a script. Lines and columns are counted from 1, columns in bytes.
struct ScriptPlace {
  std::string file;
  int line = 1;
  int column = 1;
};

// "file:line:column: message".
inline std::string Located(const ScriptPlace& place, const std::string& message) {
  return place.file + ":" + std::to_string(place.line) + ":" + std::to_string(place.column) + ": " + message;
}

// The first event of every run, even of one that can't start.
struct RunStarted {
  std::vector<std::string> scripts;
  // The number of steps in all scripts, without tests and notes.
  size_t steps = 0;
};

struct ScriptStarted {
  std::string file;
};

// A test with a name. With retries it is started once for each attempt, one right after the other.
struct TestStarted {
  ScriptPlace place;
  std::string name;
  // Counted from 1.
  int attempt = 1;
};

struct NoteReached {
  ScriptPlace place;
  std::string text;
};

// A phrase or command, the action made from it, and the answer.
struct Exchange {
  // The phrase or the raw command.
  std::string said;
  // Empty if nothing was sent.
  std::string action;
  // The data as readable text: a bundle is written as its pairs.
  std::string data;
  bool is_answered = false;
  std::string answer;
  // From sending to the last piece of the answer.
  std::chrono::microseconds answer_time{0};
  int pieces = 1;
};

// Why a step failed.
struct Failure {
  // May be empty if `expected` and `actual` are set.
  std::string message;
  // For a comparison: the matcher as written in the script, and the actual text in quotation marks. Both are
  // set or neither is.
  std::string expected;
  std::string actual;
  // The page's most recent console lines, "level: text", oldest first.
  std::vector<std::string> console;
  // The screenshot's file; empty if there is none.
  std::string screenshot;
};

enum class StepStatus { kPassed, kFailed, kSkipped };

struct StepDone {
  ScriptPlace place;
  // The statement's first word.
  std::string statement;
  // The line as written in the script.
  std::string source;
  StepStatus status = StepStatus::kPassed;
  std::chrono::microseconds duration{0};
  // Set for a step that says or sends something.
  std::optional<Exchange> exchange;
  // What the page showed, if the step checked that and passed.
  std::string shown;
  // Set if and only if the step failed.
  std::optional<Failure> failure;
  // The attempt of its test.
  int attempt = 1;
  // The attempt failed and another one follows, so the step does not count.
  bool is_replaced = false;
};

// A flaky test failed in an attempt and passed in a later one.
enum class TestOutcome { kPassed, kFailed, kSkipped, kFlaky };

// Once for each test, after all its attempts.
struct TestDone {
  // The place of its `test` statement; without a name, that of its first step.
  ScriptPlace place;
  // Empty for the steps before the script's first test.
  std::optional<std::string> name;
  TestOutcome outcome = TestOutcome::kPassed;
  int attempts = 1;
  // The time of all its steps, in all attempts.
  std::chrono::microseconds duration{0};
};

// All steps of a script have been reported.
struct ScriptDone {
  std::string file;
  std::chrono::microseconds duration{0};
};

// The page has registered callbacks for these actions, which replace its earlier ones.
struct ActionsRegistered {
  std::vector<std::string> actions;
};

// The page or the script API wrote a line to the console.
struct ConsoleWritten {
  std::string level;
  std::string text;
  // "page" or "api".
  std::string source;
};

// The page's process crashed; the runtime reloads the page.
struct PageCrashed {};

// The application ended by itself, or its window was closed.
struct ApplicationClosed {};

// The page requested a resource.
struct RequestMade {
  std::string url;
  // What the request was for: "img", "script", "fetch", …
  std::string kind;
  // The status of the response; 0 if there was none or the page must not know it.
  int status = 0;
  std::chrono::microseconds duration{0};
};

// An item on the page.
struct SeenItem {
  long number = 0;
  std::string title;
  // In CSS pixels, relative to the page's window. Without a size if the item is not on the screen.
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  bool is_focused = false;
  bool is_visible = true;
};

struct PagePicture {
  // Equal pictures have equal ids. Empty if the page can't be painted.
  std::string id;
  // The picture as a data URL. Empty in an event read from a file that contains it earlier.
  std::string url;
};

// What the page shows, until the next event of this kind. Emitted after a test starts and after a step is
// done, if that changed the page and a report needs views.
struct PageSeen {
  // The window's size in CSS pixels.
  double width = 0;
  double height = 0;
  std::vector<SeenItem> items;
  PagePicture picture;
};

// How many of the registered actions were spoken. The lists follow the order of the action table.
struct CoverageMeasured {
  // Registered actions that were spoken and answered, and those that were not.
  std::vector<std::string> spoken;
  std::vector<std::string> unspoken;
  // Spoken actions that were always answered "not_support".
  std::vector<std::string> refused;
  // The property names of the callbacks that the application does not have.
  std::vector<std::string> missing_callbacks;
  // The share of registered actions that were spoken; 100 if none is registered.
  int percent = 100;
};

// The run can't start or can't continue.
struct RunAborted {
  // The reason, a sentence.
  std::string message;
};

// The numbers of steps that count.
struct Totals {
  int passed = 0;
  int failed = 0;
  int skipped = 0;
};

// The numbers of tests.
struct TestTotals {
  int passed = 0;
  int failed = 0;
  int skipped = 0;
  int flaky = 0;
};

// The last event of every run.
struct RunEnded {
  // The exit status of the program.
  int status = 0;
  // The totals of all steps.
  Totals totals;
  std::chrono::microseconds duration{0};
  TestTotals tests;
};

using Event = std::variant<RunStarted, ScriptStarted, TestStarted, NoteReached, StepDone, TestDone,
                           ScriptDone, ActionsRegistered, ConsoleWritten, RequestMade, PageSeen, PageCrashed,
                           ApplicationClosed, CoverageMeasured, RunAborted, RunEnded>;

// Receives the events of a run in order.
class EventSink {
 public:
  EventSink() = default;
  virtual ~EventSink() = default;
  EventSink(const EventSink&) = delete;
  EventSink& operator=(const EventSink&) = delete;

  virtual void Take(const Event& event) = 0;
};

// Passes each event to several sinks, in the order in which they were added.
class EventFanOut : public EventSink {
 public:
  // Keeps a reference: the sink must outlive this object's use.
  void Add(EventSink& sink) { sinks_.push_back(&sink); }

  void Take(const Event& event) override {
    for (EventSink* sink : sinks_) sink->Take(event);
  }

 private:
  std::vector<EventSink*> sinks_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_EVENTS_EVENTS_H_
