// The process's connection to the bus, for tools that need more than ports and events.
#ifndef NURVO_DESKTOP_BUS_H_
#define NURVO_DESKTOP_BUS_H_

#ifdef __cplusplus
extern "C" {
#endif

struct sd_bus;

// What message_port_register_local_port returns when another process runs with the same application id.
enum { NURVO_DESKTOP_ERROR_APP_ID_TAKEN = -17 };

// The one connection of this process, opened at the first use of any port, event or of this function and
// served by GLib's default main context. Null when the bus of DBUS_SESSION_BUS_ADDRESS can't be reached or
// the connection is lost. Stays the platform's: don't close it, process it or attach it elsewhere.
struct sd_bus* nurvo_bus();

#ifdef __cplusplus
}
#endif

#endif  // NURVO_DESKTOP_BUS_H_
