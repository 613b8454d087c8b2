// Subscribes to application events. Each subscription has its own match rule on the bus.
#include "nurvo/app_event.h"

#include <cerrno>
#include <map>
#include <memory>
#include <string>

#include "bus/bus_connection.h"
#include "bus/bus_log.h"
#include "bus/payload.h"
#include "event/event_address.h"
#include "support/c_interface.h"

struct event_handler {
  event_cb callback;
  void* user_data;
  nurvo::SlotPtr slot;
};

namespace {

using Handlers = std::map<event_handler_h, std::unique_ptr<event_handler>>;

// The subscriptions of the process. Never destroyed, because events may arrive until the process ends.
Handlers& Subscribed() {
  static auto* const handlers = new Handlers;
  return *handlers;
}

const char* Deliver(sd_bus_message* message, const event_handler& handler) {
  if (sd_bus_message_has_signature(message, nurvo::kPublishedSignature) <= 0)
    return "its signature is not say";
  const char* name = nullptr;
  if (sd_bus_message_read(message, "s", &name) < 0) return "it can't be read";
  const char* fault = nullptr;
  const nurvo::BundlePtr data = nurvo::ReadPayload(message, fault);
  if (data) handler.callback(name, data.get(), handler.user_data);
  return fault;
}

int OnPublished(sd_bus_message* message, void* user_data, sd_bus_error* /*error*/) {
  const auto* const handler = static_cast<event_handler*>(user_data);
  const char* const fault =
      nurvo::Guarded("memory is short or its receiver failed", [&] { return Deliver(message, *handler); });
  if (fault != nullptr) {
    log_print(NURVO_LOG_ERROR, nurvo::kBusTag, "Dropped an event from %s: %s.",
              sd_bus_message_get_sender(message), fault);
  }
  return 0;
}

int Subscribe(const char* name, std::unique_ptr<event_handler> handler, event_handler_h* handle) {
  sd_bus* const bus = nurvo::BusConnection::Shared().Get();
  if (bus == nullptr) return -ENOTCONN;
  const std::string rule = std::string("type='signal',path='") + nurvo::kEventPath + "',interface='" +
                           nurvo::kEventInterface + "',member='" + nurvo::kPublishedMember + "',arg0='" +
                           name + "'";
  sd_bus_slot* slot = nullptr;
  const int result = sd_bus_add_match(bus, &slot, rule.c_str(), OnPublished, handler.get());
  if (result < 0) return result;
  handler->slot.reset(slot);
  *handle = handler.get();
  Subscribed()[handler.get()] = std::move(handler);
  return 0;
}

}  // namespace

NURVO_EXPORT int event_add_event_handler(const char* name, event_cb callback, void* user_data,
                                         event_handler_h* handler) {
  if (!nurvo::isEventName(name) || callback == nullptr || handler == nullptr) return -EINVAL;
  return nurvo::Guarded(-ENOMEM, [&] {
    auto made = std::make_unique<event_handler>();
    made->callback = callback;
    made->user_data = user_data;
    return Subscribe(name, std::move(made), handler);
  });
}

NURVO_EXPORT int event_remove_event_handler(event_handler_h handler) {
  return Subscribed().erase(handler) == 1 ? 0 : -EINVAL;
}
