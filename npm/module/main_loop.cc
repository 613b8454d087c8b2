// The main loop of the voice service in a page: waiting means delivering the messages that are queued on the
// bus. A page answers while a command is delivered to it, so an empty queue means that no answer will arrive.
#include "service/main_loop.h"

#include "platform/bus.h"

namespace corvis::kit {

bool WaitUntil(const std::function<bool()>& holds, std::chrono::milliseconds /*timeout*/) {
  while (!holds()) {
    if (!simulator::Bus::Get().DeliverNext()) return false;
  }
  return true;
}

bool HappensWithin(const std::function<bool()>& holds, std::chrono::milliseconds time) {
  return WaitUntil(holds, time);
}

const Error* WhyWaitsEnd() {
  return nullptr;
}

}  // namespace corvis::kit
