// Message ports: named mailboxes through which applications send each other bundles.
#ifndef NURVO_MESSAGE_PORT_H_
#define NURVO_MESSAGE_PORT_H_

#include <stdbool.h>

#include "nurvo/bundle.h"

#ifdef __cplusplus
extern "C" {
#endif

enum {
  MESSAGE_PORT_ERROR_NONE = 0,
  MESSAGE_PORT_ERROR_INVALID_PARAMETER = -22,
  // The bus can't be reached or refused the operation.
  MESSAGE_PORT_ERROR_IO_ERROR = -5,
  MESSAGE_PORT_ERROR_OUT_OF_MEMORY = -12,
  // No application of that id is running.
  MESSAGE_PORT_ERROR_PORT_NOT_FOUND = -18022399,
  // The message is larger than a port accepts.
  MESSAGE_PORT_ERROR_MAX_EXCEEDED = -18022397,
};

// Called on the main loop for each message. The message stays owned by the platform. `remote_port` is the
// sender's port, or null if the sender named none.
typedef void (*message_port_message_cb)(int local_port_id, const char* remote_app_id, const char* remote_port,
                                        bool trusted_remote_port, bundle* message, void* user_data);

// Opens the port `name` of this process's application. Returns the port's id, greater than 0, or a negative
// code. Opening a name again returns the same id and replaces the callback and its user data.
int message_port_register_local_port(const char* name, message_port_message_cb callback, void* user_data);

// Closes a port; its callback is not called again. Returns 0, or a negative code for an id that is not open.
int message_port_unregister_local_port(int local_port_id);

// Sends a copy of `message` to a port of another application without waiting for its delivery. Returns 0 or a
// negative code.
int message_port_send_message(const char* remote_app_id, const char* remote_port, bundle* message);

#ifdef __cplusplus
}
#endif

#endif  // NURVO_MESSAGE_PORT_H_
