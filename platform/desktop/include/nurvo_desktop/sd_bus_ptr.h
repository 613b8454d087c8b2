// Owning pointers to sd-bus objects.
#ifndef NURVO_DESKTOP_SD_BUS_PTR_H_
#define NURVO_DESKTOP_SD_BUS_PTR_H_

#include <systemd/sd-bus.h>

#include "nurvo_desktop/owned.h"

namespace nurvo {

// Closes the connection; queued messages are lost unless flushed.
using BusPtr = Owned<sd_bus, sd_bus_close_unref>;
using MessagePtr = Owned<sd_bus_message, sd_bus_message_unref>;
// A registration with the bus, ended by the destructor.
using SlotPtr = Owned<sd_bus_slot, sd_bus_slot_unref>;
using CredsPtr = Owned<sd_bus_creds, sd_bus_creds_unref>;

}  // namespace nurvo

#endif  // NURVO_DESKTOP_SD_BUS_PTR_H_
