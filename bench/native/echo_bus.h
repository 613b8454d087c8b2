// Bus functions that both ends of the bare echo use.
#ifndef CORVIS_BENCH_ECHO_BUS_H_
#define CORVIS_BENCH_ECHO_BUS_H_

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "native/echo.h"
#include "nurvo_desktop/sd_bus_ptr.h"

namespace bench {

// Exits the program unless `result` is a success.
inline int Checked(int result, const char* doing) {
  if (result >= 0) return result;
  std::fprintf(stderr, "%s failed: %s.\n", doing, std::strerror(-result));
  std::exit(1);
}

// Opens a connection that owns `name` and calls `on_delivery` for the echo's calls.
inline sd_bus* OpenEchoBus(const char* name, sd_bus_message_handler_t on_delivery, void* data) {
  sd_bus* bus = nullptr;
  Checked(sd_bus_open_user(&bus), "Opening the bus");
  Checked(sd_bus_add_object(bus, nullptr, kEchoPath, on_delivery, data), "Serving the echo");
  Checked(sd_bus_request_name(bus, name, 0), "Taking a name");
  return bus;
}

inline void SendEcho(sd_bus* bus, const char* to, unsigned wanted, const std::string& payload) {
  sd_bus_message* message = nullptr;
  Checked(sd_bus_message_new_method_call(bus, &message, to, kEchoPath, kEchoInterface, kEchoMember),
          "Making a message");
  sd_bus_message_set_expect_reply(message, 0);
  Checked(sd_bus_message_append(message, "u", wanted), "Filling a message");
  Checked(sd_bus_message_append_array(message, 'y', payload.data(), payload.size()), "Filling a message");
  Checked(sd_bus_send(bus, message, nullptr), "Sending");
  const nurvo::MessagePtr owner(message);
}

// Handles one incoming message, or waits for one.
inline void Turn(sd_bus* bus) {
  const int handled = Checked(sd_bus_process(bus, nullptr), "Receiving");
  if (handled == 0) Checked(sd_bus_wait(bus, UINT64_MAX), "Waiting");
}

}  // namespace bench

#endif  // CORVIS_BENCH_ECHO_BUS_H_
