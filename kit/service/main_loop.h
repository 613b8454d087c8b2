// Waits on the main loop with a deadline.
#ifndef CORVIS_KIT_SERVICE_MAIN_LOOP_H_
#define CORVIS_KIT_SERVICE_MAIN_LOOP_H_

#include <chrono>
#include <functional>

#include "base/result.h"

namespace corvis::kit {

// Runs the main loop until `holds` returns true, the time is over, or EndWaits is called. Returns the last
// value of `holds`.
bool WaitUntil(const std::function<bool()>& holds, std::chrono::milliseconds timeout);

// The same for what is expected not to happen: the time is never suspended.
bool HappensWithin(const std::function<bool()>& holds, std::chrono::milliseconds time);

// Runs the main loop for this time, or until EndWaits is called.
void RunFor(std::chrono::milliseconds time);

// Suspends the time limits of all WaitUntil, as long as somebody debugs the page. Thread-safe.
void SuspendTimeLimits(bool are_suspended);
bool AreTimeLimitsSuspended();

// Ends every current and future wait of the process. Only the first reason is kept. Thread-safe.
void EndWaits(Error reason);
// The reason passed to EndWaits; null if it was not called.
const Error* WhyWaitsEnd();
// Lets waits go on after the application has ended, before it is started again. An error if they are ended
// for another reason, which is then the error.
Status ResumeWaits();
inline bool IsInterrupted() {
  return WhyWaitsEnd() != nullptr;
}

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SERVICE_MAIN_LOOP_H_
