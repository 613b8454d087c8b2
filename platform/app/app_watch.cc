// Watches applications by their names on the bus.
#include "nurvo_desktop/app_watch.h"

#include <cerrno>
#include <map>
#include <memory>
#include <string>

#include "bus/bus_connection.h"
#include "bus/name_watch.h"
#include "message_port/port_address.h"
#include "support/c_interface.h"

struct app_watch {
  std::unique_ptr<nurvo::NameWatch> watch;
};

namespace {

using Watches = std::map<app_watch_h, std::unique_ptr<app_watch>>;

// The process's watches. Never destroyed, because the bus may call back until the process ends.
Watches& Watched() {
  static auto* const watches = new Watches;
  return *watches;
}

int Watch(const std::string& app_id, app_watch_cb callback, void* user_data, app_watch_h* handle) {
  sd_bus* const bus = nurvo::BusConnection::Shared().Get();
  if (bus == nullptr) return -ENOTCONN;
  int error = 0;
  auto made = std::make_unique<app_watch>();
  made->watch = nurvo::NameWatch::Open(
      bus, app_id, [=](bool is_running) { callback(app_id.c_str(), is_running, user_data); }, error);
  if (!made->watch) return error;
  *handle = made.get();
  Watched()[made.get()] = std::move(made);
  return 0;
}

}  // namespace

NURVO_EXPORT int app_watch_add(const char* app_id, app_watch_cb callback, void* user_data,
                               app_watch_h* watch) {
  if (!nurvo::isAppId(app_id) || callback == nullptr || watch == nullptr) return -EINVAL;
  return nurvo::Guarded(-ENOMEM, [&] { return Watch(app_id, callback, user_data, watch); });
}

NURVO_EXPORT int app_watch_remove(app_watch_h watch) {
  return Watched().erase(watch) == 1 ? 0 : -EINVAL;
}

NURVO_EXPORT bool app_watch_is_running(const char* app_id) {
  sd_bus* const bus = nurvo::BusConnection::Shared().Get();
  return bus != nullptr && nurvo::isAppId(app_id) && nurvo::HasOwner(bus, app_id) > 0;
}
