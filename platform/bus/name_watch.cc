// Tracks the owners of bus names through the bus daemon's NameOwnerChanged signals.
#include "bus/name_watch.h"

#include <utility>

#include "support/c_interface.h"

namespace nurvo {

namespace {

constexpr const char* kDaemon = "org.freedesktop.DBus";
constexpr const char* kDaemonPath = "/org/freedesktop/DBus";

}  // namespace

int HasOwner(sd_bus* bus, const char* name) {
  sd_bus_message* reply = nullptr;
  int result =
      sd_bus_call_method(bus, kDaemon, kDaemonPath, kDaemon, "NameHasOwner", nullptr, &reply, "s", name);
  const MessagePtr owner(reply);
  int has_owner = 0;
  if (result >= 0) result = sd_bus_message_read(reply, "b", &has_owner);
  return result < 0 ? result : has_owner;
}

std::unique_ptr<NameWatch> NameWatch::Open(sd_bus* bus, const std::string& name, ChangeCallback on_change,
                                           int& error) {
  std::unique_ptr<NameWatch> watch(new NameWatch(name, std::move(on_change)));
  const std::string rule = std::string("type='signal',sender='") + kDaemon + "',path='" + kDaemonPath +
                           "',interface='" + kDaemon + "',member='NameOwnerChanged',arg0='" + name + "'";
  sd_bus_slot* slot = nullptr;
  error = sd_bus_add_match(bus, &slot, rule.c_str(), OnOwnerChanged, watch.get());
  if (error < 0) return nullptr;
  watch->slot_.reset(slot);
  watch->hasOwner(bus);
  return watch;
}

bool NameWatch::hasOwner(sd_bus* bus) {
  if (!has_owner_) has_owner_ = HasOwner(bus, name_.c_str()) > 0;
  return has_owner_;
}

int NameWatch::OnOwnerChanged(sd_bus_message* message, void* user_data, sd_bus_error* /*error*/) {
  auto* const self = static_cast<NameWatch*>(user_data);
  const char* new_owner = nullptr;
  if (sd_bus_message_read(message, "sss", nullptr, nullptr, &new_owner) < 0) return 0;
  self->has_owner_ = *new_owner != '\0';
  // A copy, because the callback may destroy the watch.
  const ChangeCallback on_change = self->on_change_;
  if (on_change) Guarded(0, [&, has_owner = self->has_owner_] { return on_change(has_owner), 0; });
  return 0;
}

}  // namespace nurvo
