// Owners for sd-bus objects.
#ifndef NURVO_PLATFORM_BUS_SD_BUS_PTR_H_
#define NURVO_PLATFORM_BUS_SD_BUS_PTR_H_

#include <systemd/sd-bus.h>

#include <memory>

namespace nurvo {

struct SdBusDeleter {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};
using BusPtr = std::unique_ptr<sd_bus, SdBusDeleter>;
using MessagePtr = std::unique_ptr<sd_bus_message, SdBusDeleter>;
// A registration with the bus; destroying it ends the registration.
using SlotPtr = std::unique_ptr<sd_bus_slot, SdBusDeleter>;

}  // namespace nurvo

#endif  // NURVO_PLATFORM_BUS_SD_BUS_PTR_H_
