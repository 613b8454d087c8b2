// Waits by iterating GLib's default main context.
#include "service/main_loop.h"

#include <glib-unix.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <memory>
#include <utility>

namespace corvis::kit {

namespace {

// Process-wide state, like the end of the process itself. Never freed, because other threads may read it.
std::atomic<const Error*>& Reason() {
  static std::atomic<const Error*> reason{nullptr};
  return reason;
}

guint AddTimer(std::chrono::milliseconds time, GSourceFunc then, gpointer data) {
  return g_timeout_add(static_cast<guint>(std::clamp<int64_t>(time.count(), 0, G_MAXINT)), then, data);
}

}  // namespace

bool WaitUntil(const std::function<bool()>& holds, std::chrono::milliseconds timeout) {
  bool is_over = false;
  const auto set_over = [](gpointer flag) -> gboolean {
    *static_cast<bool*>(flag) = true;
    return G_SOURCE_CONTINUE;
  };
  const guint timer = AddTimer(timeout, set_over, &is_over);
  while (!holds() && !is_over && !IsInterrupted()) g_main_context_iteration(nullptr, TRUE);
  g_source_remove(timer);
  return holds();
}

void EndWaits(Error reason) {
  auto first = std::make_unique<const Error>(std::move(reason));
  const Error* none = nullptr;
  if (Reason().compare_exchange_strong(none, first.get())) static_cast<void>(first.release());
  g_main_context_wakeup(nullptr);
}

Status ResumeWaits() {
  const Error* reason = Reason().load();
  if (reason == nullptr) return {};
  // Not freed: another thread may still look at it.
  const bool is_closing =
      reason->kind == ErrorKind::kClosed && Reason().compare_exchange_strong(reason, nullptr);
  return is_closing ? Status() : Fail(*reason);
}

const Error* WhyWaitsEnd() {
  return Reason().load();
}

void EndWaitsOnSignals() {
  const auto end = [](gpointer /*data*/) -> gboolean {
    EndWaits({"The run was interrupted.", ErrorKind::kInterrupted});
    return G_SOURCE_CONTINUE;
  };
  for (const int signal : {SIGINT, SIGTERM}) g_unix_signal_add(signal, end, nullptr);
}

void EndWaitsAfter(std::chrono::milliseconds time) {
  const auto end = [](gpointer /*data*/) -> gboolean {
    EndWaits({"The time limit for the whole run is over.", ErrorKind::kTimeOver});
    return G_SOURCE_REMOVE;
  };
  AddTimer(time, end, nullptr);
}

}  // namespace corvis::kit
