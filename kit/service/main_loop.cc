// Waits by iterating GLib's default main context.
#include "service/main_loop.h"

#include <glib.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>

namespace corvis::kit {

namespace {

// Process-wide state, like the end of the process itself. Never freed, because other threads may read it.
std::atomic<const Error*>& Reason() {
  static std::atomic<const Error*> reason{nullptr};
  return reason;
}

std::atomic<bool>& Suspension() {
  static std::atomic<bool> are_suspended{false};
  return are_suspended;
}

// Runs the main loop as long as `may_go_on` says, which gets whether the time is over.
template <typename MayGoOn>
void RunWhile(const MayGoOn& may_go_on, std::chrono::milliseconds time) {
  bool is_over = false;
  const auto set_over = [](gpointer flag) -> gboolean {
    *static_cast<bool*>(flag) = true;
    return G_SOURCE_CONTINUE;
  };
  const auto limit = static_cast<guint>(std::clamp<int64_t>(time.count(), 0, G_MAXINT));
  const guint timer = g_timeout_add(limit, set_over, &is_over);
  while (may_go_on(is_over) && !IsInterrupted()) g_main_context_iteration(nullptr, TRUE);
  g_source_remove(timer);
}

}  // namespace

bool WaitUntil(const std::function<bool()>& holds, std::chrono::milliseconds timeout) {
  RunWhile([&holds](bool is_over) { return !holds() && (!is_over || AreTimeLimitsSuspended()); }, timeout);
  return holds();
}

bool HappensWithin(const std::function<bool()>& holds, std::chrono::milliseconds time) {
  RunWhile([&holds](bool is_over) { return !holds() && !is_over; }, time);
  return holds();
}

void RunFor(std::chrono::milliseconds time) {
  RunWhile([](bool is_over) { return !is_over; }, time);
}

void SuspendTimeLimits(bool are_suspended) {
  Suspension() = are_suspended;
}
bool AreTimeLimitsSuspended() {
  return Suspension();
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

}  // namespace corvis::kit
