// Runs voice scripts against an application and emits an event for everything that happens.
#ifndef CORVIS_KIT_SCRIPT_RUNNER_H_
#define CORVIS_KIT_SCRIPT_RUNNER_H_

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/conversation.h"
#include "base/result.h"
#include "events/events.h"
#include "script/page_views.h"
#include "script/script.h"
#include "script/session.h"

namespace corvis::kit {

// The event that starts a run of these scripts.
RunStarted BeginningOf(const std::vector<VoiceScript>& scripts);

// The event of a step that did not run.
StepDone SkippedStep(const Step& step);

struct RunnerOptions {
  // The delay before each phrase or command, so that a person can follow the run.
  std::chrono::milliseconds pace{0};
  // The folder for screenshots of failed steps; empty for none.
  std::string screenshot_folder;
  // Starts the application again for the next script if a step expected its end; null if that is not
  // possible.
  std::function<Status()> start_again;
  // Whether to emit views of the page and its requests. Takes time after each step.
  bool emits_views = false;
};

// Emits the events of the scripts and of the page. The caller emits those of the whole run, of coverage and
// of the console.
class ScriptRunner {
 public:
  // Requires that the page is loaded and Conversation::NoteBeginning was called. Keeps the references.
  ScriptRunner(Conversation& conversation, EventSink& events, RunnerOptions options = {});

  // Runs the tests of a script. Every script but the first starts with a new page. A failed step skips the
  // rest of its test. When all waits are ended (service/main_loop.h), the current step fails and everything
  // after it is skipped, unless a step expects the application to end.
  void Run(const VoiceScript& script);

  // Runs a step outside any script. Emits the page's events, but not the step's own. What the page wrote to
  // its console until then has reached the sink.
  StepDone RunAlone(const Step& step);

  // Emits events for the page's registrations, crashes and end.
  void ReportPage();

  // Why the run could not complete; null if it did.
  const Error* Obstacle() const;

 private:
  // Restore the page for a script or a test, if necessary.
  Status PrepareScript();
  Status PrepareTest();
  void RunTest(const ScriptTest& test, bool is_last);
  StepDone RunStep(const Step& step, bool is_last);
  // Whether the application has ended and this step or the next one expects that.
  bool HasEndedAsExpected(const Step& step) const;
  Verdict Do(const Step& step, bool is_last);
  // Waits for the end of the application if it is already ending.
  void AwaitClosing();
  // Adds the callback's exception, the console lines and a screenshot to a failure.
  void Document(StepDone& done);
  void LookAfter(const Step& step, bool has_failed);

  Conversation& conversation_;
  EventSink& events_;
  RunnerOptions options_;
  Session session_;
  // Null unless views are to be emitted.
  std::unique_ptr<PageViews> views_;
  // The initial time limit of each script.
  std::chrono::milliseconds timeout_;
  bool is_first_script_ = true;
  // A step has failed because all waits are ended.
  bool is_over_ = false;
  // The application has ended, and a step expected it.
  bool has_ended_as_expected_ = false;
  bool is_closing_reported_ = false;
  // An error makes the next step fail.
  Status ready_;
  // Crashes and registered actions that have been reported, and crashes after which the page listens again.
  int reported_crashes_ = 0;
  int settled_crashes_ = 0;
  std::vector<std::string> reported_actions_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_RUNNER_H_
