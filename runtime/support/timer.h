// A timer of the main loop.
#ifndef CORVIS_RUNTIME_SUPPORT_TIMER_H_
#define CORVIS_RUNTIME_SUPPORT_TIMER_H_

#include <glib.h>

#include <functional>
#include <utility>

namespace corvis::tv {

// Calls a function once after a delay, unless it is stopped or destroyed before.
class Timer {
 public:
  explicit Timer(std::function<void()> due) : due_(std::move(due)) {}
  ~Timer() { Stop(); }
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  bool is_running() const { return source_ != 0; }
  // Begins anew if it is running.
  void Start(guint delay_ms) {
    Stop();
    source_ = g_timeout_add(delay_ms, OnDue, this);
  }
  void Stop() {
    if (source_ != 0) g_source_remove(std::exchange(source_, 0));
  }

 private:
  static gboolean OnDue(gpointer timer) {
    static_cast<Timer*>(timer)->source_ = 0;
    static_cast<Timer*>(timer)->due_();
    return G_SOURCE_REMOVE;
  }

  std::function<void()> due_;
  guint source_ = 0;
};

}  // namespace corvis::tv

#endif  // CORVIS_RUNTIME_SUPPORT_TIMER_H_
