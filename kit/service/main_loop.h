// Waiting on the main loop, with a deadline.
#ifndef CORVIS_KIT_SERVICE_MAIN_LOOP_H_
#define CORVIS_KIT_SERVICE_MAIN_LOOP_H_

#include <chrono>
#include <functional>

#include "base/result.h"

namespace corvis::kit {

// Runs the main loop until `holds` is true, the time is over, or waits end for good. Returns whether it
// holds.
bool WaitUntil(const std::function<bool()>& holds, std::chrono::milliseconds timeout);

// Ends every wait of the process, for good. The first reason counts. May be called from any thread.
void EndWaits(Error reason);
// The reason; null while waits don't end.
const Error* WhyWaitsEnd();
inline bool IsInterrupted() {
  return WhyWaitsEnd() != nullptr;
}
// Whether the reason is the time of the whole run.
inline bool IsTimeOver() {
  return IsInterrupted() && WhyWaitsEnd()->kind == ErrorKind::kTimeOver;
}

// SIGINT and SIGTERM end every wait from now on, instead of the process.
void EndWaitsOnSignals();
// The same when this time is over.
void EndWaitsAfter(std::chrono::milliseconds time);

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_MAIN_LOOP_H_
