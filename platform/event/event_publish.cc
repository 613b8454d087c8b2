// Publishes application events.
#include "nurvo_desktop/event_publish.h"

#include <cerrno>

#include "bus/bus_connection.h"
#include "bus/payload.h"
#include "event/event_address.h"
#include "support/c_interface.h"

namespace {

int Publish(const char* name, bundle* data) {
  nurvo::Payload payload;
  int result = payload.Encode(data);
  if (result < 0) return result;
  nurvo::BusConnection& connection = nurvo::BusConnection::Shared();
  sd_bus* const bus = connection.Get();
  if (bus == nullptr) return -ENOTCONN;
  sd_bus_message* made = nullptr;
  result = sd_bus_message_new_signal(bus, &made, nurvo::kEventPath, nurvo::kEventInterface,
                                     nurvo::kPublishedMember);
  const nurvo::MessagePtr signal(made);
  if (result >= 0) result = sd_bus_message_append(made, "s", name);
  if (result >= 0) result = payload.AppendTo(made);
  return result < 0 ? result : connection.Send(made);
}

}  // namespace

NURVO_EXPORT int event_publish_app_event(const char* name, bundle* data) {
  if (!nurvo::isEventName(name)) return -EINVAL;
  return nurvo::Guarded(-ENOMEM, [&] {
    const nurvo::BundlePtr empty(data == nullptr ? bundle_create() : nullptr);
    return Publish(name, data == nullptr ? empty.get() : data);
  });
}
