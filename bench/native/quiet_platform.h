// The parts of the platform that would leave the process, within it: ports keep their callback, a send
// encodes its bundle and drops it, nothing is published.
#ifndef CORVIS_BENCH_QUIET_PLATFORM_H_
#define CORVIS_BENCH_QUIET_PLATFORM_H_

#include <cstddef>

#include "nurvo/message_port.h"

namespace bench {

struct OpenPort {
  message_port_message_cb callback = nullptr;
  void* user_data = nullptr;
};

struct Sent {
  size_t messages = 0;
  size_t bytes = 0;
};

// The port that was opened last, and what was sent so far, by the whole process.
OpenPort& LastPort();
Sent& TheSent();

}  // namespace bench

#endif  // CORVIS_BENCH_QUIET_PLATFORM_H_
