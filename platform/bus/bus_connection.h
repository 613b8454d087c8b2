// The process's only connection to the bus, and sending messages on it.
#ifndef NURVO_PLATFORM_BUS_BUS_CONNECTION_H_
#define NURVO_PLATFORM_BUS_BUS_CONNECTION_H_

#include "nurvo_desktop/sd_bus_ptr.h"

namespace nurvo {

// Used on the thread of the main loop.
class BusConnection {
 public:
  // The process's connection. Never closed, so that a message sent at exit still goes out.
  static BusConnection& Shared();

  // Opens the connection on first use and attaches it to the main loop. Returns null if the bus can't be
  // reached (the next call tries again) or the connection was lost (permanently). The pointer stays owned by
  // this object.
  sd_bus* Get();

  // Sends `message` without waiting for its receiver. If many large messages are sent in a row, waits for the
  // bus to accept them, so that they don't accumulate in this process. Returns 0 or a negative errno: -EAGAIN
  // if the bus is stalled.
  int Send(sd_bus_message* message);

 private:
  BusConnection() = default;

  bool HandOver(sd_bus* bus);

  BusPtr bus_;
  bool was_stalled_ = false;
};

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUS_BUS_CONNECTION_H_
