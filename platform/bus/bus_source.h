// Processes a bus connection on GLib's main loop.
#ifndef NURVO_PLATFORM_BUS_BUS_SOURCE_H_
#define NURVO_PLATFORM_BUS_BUS_SOURCE_H_

#include <systemd/sd-bus.h>

namespace nurvo {

// Attaches `bus` to the default main context, which then runs its callbacks in the order of the messages. The
// source holds a reference. A lost connection is logged once and detached.
void AttachToMainLoop(sd_bus* bus);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUS_BUS_SOURCE_H_
