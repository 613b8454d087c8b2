// The C interface of message ports.
#include "nurvo/message_port.h"

#include "message_port/local_ports.h"
#include "message_port/port_address.h"
#include "message_port/remote_port.h"
#include "support/c_interface.h"

NURVO_EXPORT int message_port_register_local_port(const char* name, message_port_message_cb callback,
                                                  void* user_data) {
  if (!nurvo::isPortName(name) || callback == nullptr) return MESSAGE_PORT_ERROR_INVALID_PARAMETER;
  return nurvo::Guarded<int>(MESSAGE_PORT_ERROR_OUT_OF_MEMORY,
                             [&] { return nurvo::LocalPorts::Get().Open(name, callback, user_data); });
}

NURVO_EXPORT int message_port_unregister_local_port(int local_port_id) {
  return nurvo::Guarded<int>(MESSAGE_PORT_ERROR_OUT_OF_MEMORY,
                             [&] { return nurvo::LocalPorts::Get().Close(local_port_id); });
}

NURVO_EXPORT int message_port_send_message(const char* remote_app_id, const char* remote_port,
                                           bundle* message) {
  if (!nurvo::isAppId(remote_app_id) || !nurvo::isPortName(remote_port) || message == nullptr) {
    return MESSAGE_PORT_ERROR_INVALID_PARAMETER;
  }
  return nurvo::Guarded<int>(MESSAGE_PORT_ERROR_OUT_OF_MEMORY, [&] {
    return nurvo::RemotePorts::Get().Send(remote_app_id, remote_port, message);
  });
}
