// The ways in which statements wait.
#include "script/session.h"

#include "service/main_loop.h"

namespace corvis::kit {

bool HasApplicationClosed() {
  return IsInterrupted() && WhyWaitsEnd()->kind == ErrorKind::kClosed;
}

void Session::Pause(std::chrono::milliseconds time) {
  RunFor(time);
}

Verdict Session::Poll(std::chrono::milliseconds interval, const std::function<Verdict()>& look) const {
  const auto end = Clock::now() + conversation.timeout();
  for (;;) {
    Verdict verdict = look();
    if (verdict || (Clock::now() >= end && !AreTimeLimitsSuspended()) || IsInterrupted()) return verdict;
    Pause(interval);
  }
}

}  // namespace corvis::kit
