// Replaces the platform functions that would leave the process: ports only store their callback, a send
// encodes its bundle and drops it, and nothing is published.
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

// The port opened last, and the totals of what this process has sent.
OpenPort& LastPort();
Sent& TheSent();

}  // namespace bench

#endif  // CORVIS_BENCH_QUIET_PLATFORM_H_
