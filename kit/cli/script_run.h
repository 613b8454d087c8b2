// Voice scripts run against an application, from their files to the exit status: what test-app and demo
// share.
#ifndef CORVIS_KIT_CLI_SCRIPT_RUN_H_
#define CORVIS_KIT_CLI_SCRIPT_RUN_H_

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "app/supervisor.h"
#include "base/result.h"
#include "cli/application.h"

namespace corvis::kit {

struct ScriptRunOptions {
  ApplicationOptions application;
  // Names of report formats (report/reports.h): the one on standard output, and files for others; an empty
  // file for none.
  std::string report = "tap";
  std::map<std::string, std::string> report_files;
  // Where pictures of failures go. Empty: beside the JUnit report, or nowhere without one.
  std::string screenshot_folder;
  bool is_coverage_reported = false;
  // In percent; less fails the run.
  long least_coverage = 0;
  std::chrono::seconds total_timeout{600};
  // How long to wait before each thing said, for people who watch.
  std::chrono::milliseconds pace{0};
};

// Reads the scripts, each once, and runs them unless one has mistakes; these are printed on standard error.
// Gives the exit status.
Result<int> RunScripts(Supervisor& supervisor, const std::string& application,
                       const std::vector<std::string>& files, const ScriptRunOptions& options);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_SCRIPT_RUN_H_
