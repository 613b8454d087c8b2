// Runs voice scripts against an application, from the script files to the exit status. Shared by test-app and
// demo.
#ifndef CORVIS_KIT_CLI_SCRIPT_RUN_H_
#define CORVIS_KIT_CLI_SCRIPT_RUN_H_

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "app/supervisor.h"
#include "base/result.h"
#include "cli/application.h"
#include "cli/run_reports.h"
#include "cli/script_selection.h"

namespace corvis::kit {

class LastFailed;
class RunningApplication;

struct ScriptRunOptions : ReportOptions {
  ApplicationOptions application;
  SelectionOptions selection;
  // List the chosen tests and run none.
  bool is_list = false;
  // Choose only the tests that failed when they last ran.
  bool is_last_failed = false;
  // How many scripts run at the same time.
  long jobs = 1;
  // How often a script with failed tests is run again.
  long retries = 0;
  // The folder for screenshots of failures. If empty, they go next to the JUnit report, if there is one.
  std::string screenshot_folder;
  std::chrono::seconds total_timeout{600};
  // The delay before each phrase or command, so that a person can follow the run.
  std::chrono::milliseconds pace{0};
};

// What to run of the scripts, besides the options.
struct ScriptChoice {
  // Whether a script takes part; all if empty. If none does, nothing is run or reported.
  std::function<bool(const std::string& file)> includes;
  bool is_last_failed = false;
  // Whether scripts with tests that failed when they last ran come first.
  bool is_failed_first = false;
};

// The folder for screenshots of failures; empty for none.
std::string ScreenshotFolder(const ScriptRunOptions& options);

// Chooses the scripts of the operands (cli/script_selection.h) and runs them. If one has mistakes, prints
// them on standard error and runs none. Returns the exit status.
Result<int> RunScripts(Supervisor& supervisor, const std::string& application,
                       const std::vector<std::string>& operands, const ScriptRunOptions& options);

// The same for an application that may run already. The run has no time limit of its own.
Result<int> RunChosen(Supervisor& supervisor, RunningApplication& application, LastFailed& last_failed,
                      const std::vector<std::string>& operands, const ScriptRunOptions& options,
                      const ScriptChoice& choice);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_SCRIPT_RUN_H_
