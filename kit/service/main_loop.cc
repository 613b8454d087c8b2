// GLib's default main context, one turn at a time.
#include "service/main_loop.h"

#include <glib-unix.h>

#include <algorithm>
#include <csignal>

namespace corvis::kit {

namespace {

bool& Interrupted() {
  static bool is_interrupted = false;
  return is_interrupted;
}

bool& TimeOver() {
  static bool is_time_over = false;
  return is_time_over;
}

gboolean SetTrue(gpointer flag) {
  *static_cast<bool*>(flag) = true;
  return G_SOURCE_CONTINUE;
}

}  // namespace

bool WaitUntil(const std::function<bool()>& holds, std::chrono::milliseconds timeout) {
  bool is_over = false;
  const auto milliseconds = static_cast<guint>(std::clamp<int64_t>(timeout.count(), 0, G_MAXINT));
  const guint timer = g_timeout_add(milliseconds, SetTrue, &is_over);
  while (!holds() && !is_over && !IsInterrupted()) g_main_context_iteration(nullptr, TRUE);
  g_source_remove(timer);
  return holds();
}

void EndWaitsOnSignals() {
  for (const int signal : {SIGINT, SIGTERM}) g_unix_signal_add(signal, SetTrue, &Interrupted());
}

void EndWaitsAfter(std::chrono::milliseconds time) {
  g_timeout_add(static_cast<guint>(std::clamp<int64_t>(time.count(), 0, G_MAXINT)), SetTrue, &TimeOver());
}

bool IsInterrupted() {
  return Interrupted() || TimeOver();
}

bool IsTimeOver() {
  return TimeOver();
}

}  // namespace corvis::kit
