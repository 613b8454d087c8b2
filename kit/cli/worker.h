// Runs scripts for another process of this program, which feeds it scripts and reads its events.
#ifndef CORVIS_KIT_CLI_WORKER_H_
#define CORVIS_KIT_CLI_WORKER_H_

#include <string>

#include "app/supervisor.h"
#include "base/result.h"
#include "cli/script_run.h"
#include "cli/script_selection.h"

namespace corvis::kit {

// The line that makes a worker run a script.
std::string TaskLine(const SelectedScript& selected);

// Runs the scripts of the lines on standard input until its end, and writes JSON events to standard output.
// Those of a script end with ScriptDone. Returns the exit status; the other process prints the error.
Result<int> RunWorker(Supervisor& supervisor, const std::string& application,
                      const ScriptRunOptions& options);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_WORKER_H_
