// Runs voice scripts against an application, and makes the events of what happens.
#ifndef CORVIS_KIT_SCRIPT_RUNNER_H_
#define CORVIS_KIT_SCRIPT_RUNNER_H_

#include <chrono>
#include <string>
#include <vector>

#include "app/conversation.h"
#include "base/result.h"
#include "events/events.h"
#include "script/script.h"
#include "script/session.h"

namespace corvis::kit {

// The event with which a run of these scripts begins.
RunStarted BeginningOf(const std::vector<VoiceScript>& scripts);

struct RunnerOptions {
  // How long to wait before each thing said, for people who watch.
  std::chrono::milliseconds pace{0};
  // Where pictures of the page at failed steps go; empty for none.
  std::string screenshot_folder;
};

// Makes the events of the scripts and of the page. Those of the whole run, coverage and the console are its
// caller's.
class ScriptRunner {
 public:
  // The conversation's page is loaded, and its beginning is noted.
  ScriptRunner(Conversation& conversation, EventSink& events, RunnerOptions options = {});

  // Runs the tests of a script; all but the first script begin with a fresh page. A failed step ends its
  // test. When waits end for good (service/main_loop.h), the present step fails and everything after it is
  // skipped; unless the application has ended as a step expects.
  void Run(const VoiceScript& script);

  // Why not everything could be run; null when nothing is in the way.
  const Error* Obstacle() const;

  const Totals& totals() const { return totals_; }

 private:
  // Makes the page ready for a script or a test, as far as that is necessary.
  Status PrepareScript();
  Status PrepareTest();
  void RunTest(const ScriptTest& test, bool is_last);
  StepDone RunStep(const Step& step, bool is_last);
  // Whether the application has ended as this step or the next expects.
  bool HasEndedAsExpected(const Step& step) const;
  Verdict Do(const Step& step, bool is_last);
  // What the reports show of a failure beside its message.
  void Document(StepDone& done);
  // Reports what the page did by itself.
  void ReportPage();
  void Count(StepStatus status);

  Conversation& conversation_;
  EventSink& events_;
  RunnerOptions options_;
  Session session_;
  Totals totals_;
  // The time limit with which each script begins.
  std::chrono::milliseconds timeout_;
  bool is_first_script_ = true;
  // Waits end, and a step has failed because of that.
  bool is_over_ = false;
  // The application has ended, as a step expected.
  bool has_ended_as_expected_ = false;
  bool is_closing_reported_ = false;
  // Why the next step can't run.
  Status ready_;
  // Crashes and registered actions that are in the events already; crashes after which the page was waited
  // for.
  int reported_crashes_ = 0;
  int settled_crashes_ = 0;
  std::vector<std::string> reported_actions_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_RUNNER_H_
