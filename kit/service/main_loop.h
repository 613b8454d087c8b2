// Waiting on the main loop, with a deadline.
#ifndef CORVIS_KIT_SERVICE_MAIN_LOOP_H_
#define CORVIS_KIT_SERVICE_MAIN_LOOP_H_

#include <chrono>
#include <functional>

namespace corvis::kit {

// Runs the main loop until `holds` is true or the time is over, or SIGINT or SIGTERM came. Returns whether it
// holds.
bool WaitUntil(const std::function<bool()>& holds, std::chrono::milliseconds timeout);

// From now on SIGINT and SIGTERM end every wait instead of the process.
void EndWaitsOnSignals();
// The same when this time is over.
void EndWaitsAfter(std::chrono::milliseconds time);
// Whether such a signal came, or that time is over.
bool IsInterrupted();
// Whether it was the time.
bool IsTimeOver();

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_MAIN_LOOP_H_
