// GLib's default main context, one turn at a time.
#include "service/main_loop.h"

#include <glib-unix.h>

#include <algorithm>
#include <csignal>

namespace corvis::voice {

namespace {

bool& Interrupted() {
  static bool is_interrupted = false;
  return is_interrupted;
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

bool IsInterrupted() {
  return Interrupted();
}

}  // namespace corvis::voice
