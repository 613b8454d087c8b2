// Serves a bus connection from GLib's main loop.
#ifndef NURVO_PLATFORM_BUS_BUS_SOURCE_H_
#define NURVO_PLATFORM_BUS_BUS_SOURCE_H_

#include <systemd/sd-bus.h>

namespace nurvo {

// Attaches `bus` (kept alive by the source) to the default main context. From then on its callbacks come
// from there, in the order of the messages. A lost connection is logged once and detached.
void AttachToMainLoop(sd_bus* bus);

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUS_BUS_SOURCE_H_
