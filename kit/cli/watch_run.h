// test-app --watch: runs scripts again when they or the application change.
#ifndef CORVIS_KIT_CLI_WATCH_RUN_H_
#define CORVIS_KIT_CLI_WATCH_RUN_H_

#include <string>
#include <vector>

#include "cli/script_run.h"

namespace corvis::kit {

// Runs all scripts, then those that a change affects: a script that is saved itself, all when anything of the
// application is, those that failed first. Ends with "q" and the status of the last run, or with a signal.
// The application stays loaded in between.
Result<int> WatchScripts(Supervisor& supervisor, const std::string& application,
                         const std::vector<std::string>& operands, const ScriptRunOptions& options);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_WATCH_RUN_H_
