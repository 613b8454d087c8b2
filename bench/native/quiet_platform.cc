// Precedes libnurvo_platform in a program's symbol lookup and thus replaces only these functions.
#include "native/quiet_platform.h"

#include <cstdlib>
#include <cstring>

#include "nurvo/app_event.h"
#include "nurvo/app_manager.h"

namespace bench {

OpenPort& LastPort() {
  static OpenPort port;
  return port;
}

Sent& TheSent() {
  static Sent sent;
  return sent;
}

}  // namespace bench

extern "C" {

int app_manager_get_app_id(pid_t /*pid*/, char** app_id) {
  *app_id = strdup("com.example.bench");
  return 0;
}

int message_port_register_local_port(const char* /*name*/, message_port_message_cb callback,
                                     void* user_data) {
  static int ports = 0;
  bench::LastPort() = {callback, user_data};
  return ++ports;
}

int message_port_unregister_local_port(int /*local_port_id*/) {
  return 0;
}

int message_port_send_message(const char* /*remote_app_id*/, const char* /*remote_port*/, bundle* message) {
  bundle_raw* text = nullptr;
  int length = 0;
  if (bundle_encode(message, &text, &length) != 0) return MESSAGE_PORT_ERROR_OUT_OF_MEMORY;
  std::free(text);
  bench::Sent& sent = bench::TheSent();
  ++sent.messages;
  sent.bytes += static_cast<size_t>(length);
  return 0;
}

int event_add_event_handler(const char* /*name*/, event_cb /*callback*/, void* user_data,
                            event_handler_h* handle) {
  *handle = static_cast<event_handler_h>(user_data);
  return 0;
}

int event_remove_event_handler(event_handler_h /*handle*/) {
  return 0;
}

}  // extern "C"
