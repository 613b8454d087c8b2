// Runs scripts at the same time, in worker processes of this program.
#ifndef CORVIS_KIT_CLI_WORKER_POOL_H_
#define CORVIS_KIT_CLI_WORKER_POOL_H_

#include <vector>

#include "base/result.h"
#include "cli/script_selection.h"
#include "events/events.h"

namespace corvis::kit {

// The number of workers that this machine has cores and free memory for.
long SuitableWorkers();

// Passes the events on in the order of the scripts, those of a script when all before it are done. A worker
// that dies fails its script; another one takes over. Fails, after ending all workers, if one can't start or
// continue its run, or if waits are ended (service/main_loop.h); steps that did not run are then skipped.
Status RunInWorkers(const std::vector<SelectedScript>& scripts, size_t workers, EventSink& events);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_CLI_WORKER_POOL_H_
