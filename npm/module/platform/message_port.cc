// Implements the C interfaces of message ports, application events and application watches on the bus in
// memory.
#include "nurvo/message_port.h"

#include <cerrno>
#include <memory>

#include "nurvo/app_event.h"
#include "nurvo_desktop/app_watch.h"
#include "nurvo_desktop/event_publish.h"
#include "platform/bus.h"

using corvis::simulator::Bus;

int message_port_register_local_port(const char* name, message_port_message_cb callback, void* user_data) {
  if (name == nullptr || *name == '\0' || callback == nullptr) return MESSAGE_PORT_ERROR_INVALID_PARAMETER;
  return Bus::Get().Open(name, callback, user_data);
}

int message_port_unregister_local_port(int local_port_id) {
  return Bus::Get().Close(local_port_id);
}

int message_port_send_message(const char* remote_app_id, const char* remote_port, bundle* message) {
  if (remote_app_id == nullptr || remote_port == nullptr || message == nullptr) {
    return MESSAGE_PORT_ERROR_INVALID_PARAMETER;
  }
  return Bus::Get().Send(remote_app_id, remote_port, message);
}

int event_add_event_handler(const char* name, event_cb callback, void* user_data, event_handler_h* handler) {
  if (name == nullptr || callback == nullptr || handler == nullptr) return -EINVAL;
  *handler = new event_handler{Bus::Get().acting(), name, callback, user_data};
  Bus::Get().Subscribe(*handler);
  return 0;
}

int event_remove_event_handler(event_handler_h handler) {
  if (!Bus::Get().Unsubscribe(handler)) return -EINVAL;
  const std::unique_ptr<event_handler> owner(handler);
  return 0;
}

int event_publish_app_event(const char* name, bundle* data) {
  Bus::Get().Publish(name, data);
  return 0;
}

int app_watch_add(const char* app_id, app_watch_cb callback, void* user_data, app_watch_h* watch) {
  *watch = new app_watch{app_id, callback, user_data};
  Bus::Get().Watch(*watch);
  return 0;
}

int app_watch_remove(app_watch_h watch) {
  if (!Bus::Get().Unwatch(watch)) return -EINVAL;
  const std::unique_ptr<app_watch> owner(watch);
  return 0;
}

bool app_watch_is_running(const char* app_id) {
  return Bus::Get().IsRunning(app_id);
}
