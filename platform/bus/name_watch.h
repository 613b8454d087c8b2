// Tracks whether an application is on the bus, without a call to the bus each time.
#ifndef NURVO_PLATFORM_BUS_NAME_WATCH_H_
#define NURVO_PLATFORM_BUS_NAME_WATCH_H_

#include <functional>
#include <memory>
#include <string>

#include "nurvo_desktop/sd_bus_ptr.h"

namespace nurvo {

// Asks the bus whether `name` has an owner. Returns 0 or 1, or a negative errno.
int HasOwner(sd_bus* bus, const char* name);

class NameWatch {
 public:
  using ChangeCallback = std::function<void(bool has_owner)>;

  // Starts tracking `name`. `on_change` may be empty and may destroy the watch. If the bus refuses, returns
  // null and a negative errno in `error`.
  static std::unique_ptr<NameWatch> Open(sd_bus* bus, const std::string& name, ChangeCallback on_change,
                                         int& error);
  NameWatch(const NameWatch&) = delete;
  NameWatch& operator=(const NameWatch&) = delete;

  // Whether the name has an owner. A departure is noticed once the main loop has processed it. A name that
  // had no owner is looked up on the bus again, so that a new owner is never missed.
  bool hasOwner(sd_bus* bus);

 private:
  NameWatch(std::string name, ChangeCallback on_change)
      : name_(std::move(name)), on_change_(std::move(on_change)) {}

  static int OnOwnerChanged(sd_bus_message* message, void* user_data, sd_bus_error* error);

  std::string name_;
  ChangeCallback on_change_;
  bool has_owner_ = false;
  SlotPtr slot_;
};

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUS_NAME_WATCH_H_
