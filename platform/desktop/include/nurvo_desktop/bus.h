// The process's connection to the bus, for tools that need more than ports and events.
#ifndef NURVO_DESKTOP_BUS_H_
#define NURVO_DESKTOP_BUS_H_

#ifdef __cplusplus
extern "C" {
#endif

struct sd_bus;

// The result of message_port_register_local_port if another process owns the same application id.
enum { NURVO_DESKTOP_ERROR_APP_ID_TAKEN = -17 };

// The connection of this process, opened on first use of a port, an event or this function, and processed by
// GLib's default main context. Null if the bus of DBUS_SESSION_BUS_ADDRESS can't be reached or the connection
// is lost. Owned by the platform: don't close it, process it or attach it elsewhere.
struct sd_bus* nurvo_bus();

#ifdef __cplusplus
}
#endif

#endif  // NURVO_DESKTOP_BUS_H_
