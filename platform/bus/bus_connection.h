// The process's one connection to the bus, and how messages go out on it.
#ifndef NURVO_PLATFORM_BUS_BUS_CONNECTION_H_
#define NURVO_PLATFORM_BUS_BUS_CONNECTION_H_

#include "nurvo_desktop/sd_bus_ptr.h"

namespace nurvo {

// Used on the thread of the main loop.
class BusConnection {
 public:
  // The process's connection; never closed, so that a last message on the way out is still sent.
  static BusConnection& Shared();

  // Opens the connection at first use and attaches it to the main loop. Null when the bus can't be reached
  // (the next call tries again) or has been lost (it stays so). Stays the connection's.
  sd_bus* Get();

  // Hands `message` to the bus at once, without waiting for its receiver. Many large messages in a row wait
  // for the bus itself to accept them, so that they don't pile up here. Returns 0 or a negative errno:
  // -EAGAIN when the bus is stalled.
  int Send(sd_bus_message* message);

 private:
  BusConnection() = default;

  bool HandOver(sd_bus* bus);

  BusPtr bus_;
  bool was_stalled_ = false;
};

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUS_BUS_CONNECTION_H_
