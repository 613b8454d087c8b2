// Opens the connection and sends messages with a bounded wait.
#include "bus/bus_connection.h"

#include <poll.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "bus/bus_log.h"
#include "bus/bus_source.h"
#include "nurvo_desktop/bus.h"
#include "support/c_interface.h"

namespace nurvo {

namespace {

// The time limit of a call to the bus daemon.
constexpr uint64_t kDaemonTimeoutUsec = 5000000;
// How long a send waits for a bus that accepts no data. After that the bus counts as stalled: sends fail
// without waiting until it accepts data again.
constexpr int kStallTimeoutMs = 1000;

bool BecomesWritable(int fd, int timeout_ms) {
  pollfd poll_fd = {fd, POLLOUT, 0};
  return poll(&poll_fd, 1, timeout_ms) > 0;
}

int OpenBus(BusPtr& bus) {
  sd_bus* opened = nullptr;
  int result = sd_bus_open_user(&opened);
  if (result < 0) return result;
  bus.reset(opened);
  sd_bus_set_method_call_timeout(opened, kDaemonTimeoutUsec);
  const char* unique_name = nullptr;
  result = sd_bus_get_unique_name(opened, &unique_name);  // waits for the greeting
  if (result < 0) bus.reset();
  return result;
}

}  // namespace

BusConnection& BusConnection::Shared() {
  static auto* const connection = new BusConnection;
  return *connection;
}

sd_bus* BusConnection::Get() {
  if (bus_) return sd_bus_is_open(bus_.get()) > 0 ? bus_.get() : nullptr;
  const int result = OpenBus(bus_);
  if (result < 0) {
    log_print(NURVO_LOG_ERROR, kBusTag,
              "Can't reach the bus (%s). Start one and set DBUS_SESSION_BUS_ADDRESS.",
              std::strerror(-result));
    return nullptr;
  }
  AttachToMainLoop(bus_.get());
  return bus_.get();
}

int BusConnection::Send(sd_bus_message* message) {
  sd_bus* const bus = Get();
  if (bus == nullptr) return -ENOTCONN;
  if (!HandOver(bus)) return -EAGAIN;
  const int result = sd_bus_send(bus, message, nullptr);
  if (result < 0) return result;
  HandOver(bus);
  return 0;
}

// Writes queued data, which is at most one message of this process. Returns whether all of it is written.
// Waits until the socket is writable first, because sd_bus_flush alone would wait without a limit.
bool BusConnection::HandOver(sd_bus* bus) {
  uint64_t queued = 0;
  if (sd_bus_get_n_queued_write(bus, &queued) < 0 || queued == 0) return true;
  const bool has_room = BecomesWritable(sd_bus_get_fd(bus), was_stalled_ ? 0 : kStallTimeoutMs);
  was_stalled_ = !has_room;
  if (!has_room) log_print(NURVO_LOG_WARN, kBusTag, "The bus accepts no messages at present.");
  return has_room && sd_bus_flush(bus) >= 0;
}

}  // namespace nurvo

NURVO_EXPORT sd_bus* nurvo_bus() {
  return nurvo::Guarded<sd_bus*>(nullptr, [] { return nurvo::BusConnection::Shared().Get(); });
}
