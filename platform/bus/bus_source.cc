// A GSource for an sd-bus connection: its descriptor, the events that it waits for, and its timeout.
#include "bus/bus_source.h"

#include <glib.h>
#include <poll.h>

#include <cstdint>
#include <cstring>

#include "bus/bus_log.h"

namespace nurvo {

namespace {

// The number of messages to handle in a row before work of lower priority runs.
constexpr int kMessagesInARow = 16;

struct BusSource {
  GSource base;
  sd_bus* bus;
  gpointer fd_tag;
  int events;    // the events that the descriptor is watched for
  int handled;   // the messages handled since work of lower priority ran
  bool is_call;  // whether the last message was a call
};

BusSource* From(GSource* source) {
  return reinterpret_cast<BusSource*>(source);
}

// No conversion is needed: sd-bus and GLib both use microseconds of the monotonic clock.
gint64 ReadyTimeOf(sd_bus* bus) {
  uint64_t timeout = 0;
  if (sd_bus_get_timeout(bus, &timeout) < 0) return 0;  // the connection is lost; Dispatch handles that
  return timeout > INT64_MAX ? -1 : static_cast<gint64>(timeout);
}

gboolean Prepare(GSource* source, gint* timeout) {
  BusSource* const self = From(source);
  const int events = sd_bus_get_events(self->bus);
  *timeout = -1;
  if (events < 0) return TRUE;
  // Only set on a change, because setting it wakes up the loop, which calls this function again.
  if (events != self->events)
    g_source_modify_unix_fd(source, self->fd_tag, static_cast<GIOCondition>(events));
  self->events = events;
  const gint64 ready_time = ReadyTimeOf(self->bus);
  g_source_set_ready_time(source, ready_time);
  return ready_time >= 0 && ready_time <= g_source_get_time(source);
}

gboolean Check(GSource* source) {
  BusSource* const self = From(source);
  const gint64 ready_time = g_source_get_ready_time(source);
  return g_source_query_unix_fd(source, self->fd_tag) != 0 ||
         (ready_time >= 0 && ready_time <= g_source_get_time(source));
}

bool HasMore(sd_bus* bus) {
  uint64_t queued = 0;
  pollfd descriptor = {sd_bus_get_fd(bus), POLLIN, 0};
  return (sd_bus_get_n_queued_read(bus, &queued) >= 0 && queued > 0) || poll(&descriptor, 1, 0) > 0;
}

int NoteKind(sd_bus_message* message, void* source, sd_bus_error* /*error*/) {
  static_cast<BusSource*>(source)->is_call = sd_bus_message_is_method_call(message, nullptr, nullptr) > 0;
  return 0;
}

// A method call ends this turn of the main loop, so that work scheduled by its receiver (a page's callback,
// which answers) runs before the next message is handled. Pending signals are handled together.
gboolean Dispatch(GSource* source, GSourceFunc /*callback*/, gpointer /*user_data*/) {
  BusSource* const self = From(source);
  int result = 1;
  self->is_call = false;
  while (result > 0 && !self->is_call && ++self->handled < kMessagesInARow) {
    result = sd_bus_process(self->bus, nullptr);
  }
  if (result < 0) {
    log_print(NURVO_LOG_ERROR, kBusTag,
              "The connection to the bus is lost (%s). Restart the application when the bus is back.",
              std::strerror(-result));
    return G_SOURCE_REMOVE;
  }
  // After many messages, with more pending, let work of lower priority, such as drawing, run once.
  const bool gives_way = self->handled >= kMessagesInARow && HasMore(self->bus);
  if (self->handled >= kMessagesInARow) self->handled = 0;
  g_source_set_priority(source, gives_way ? G_PRIORITY_DEFAULT_IDLE : G_PRIORITY_DEFAULT);
  return G_SOURCE_CONTINUE;
}

void Finalize(GSource* source) {
  sd_bus_unref(From(source)->bus);
}

}  // namespace

void AttachToMainLoop(sd_bus* bus) {
  static GSourceFuncs functions = {Prepare, Check, Dispatch, Finalize, nullptr, nullptr};
  GSource* const source = g_source_new(&functions, sizeof(BusSource));
  BusSource* const self = From(source);
  self->bus = sd_bus_ref(bus);
  self->fd_tag = g_source_add_unix_fd(source, sd_bus_get_fd(bus), G_IO_IN);
  self->events = G_IO_IN;
  self->handled = 0;
  self->is_call = false;
  sd_bus_add_filter(bus, nullptr, NoteKind, self);
  g_source_set_name(source, "nurvo bus");
  g_source_attach(source, nullptr);
  g_source_unref(source);
}

}  // namespace nurvo
