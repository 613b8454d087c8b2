// A private message bus for a test.
#ifndef CORVIS_TESTING_PRIVATE_BUS_H_
#define CORVIS_TESTING_PRIVATE_BUS_H_

#include <glib.h>

#include <chrono>
#include <functional>
#include <memory>

#include "testing/process.h"

// Runs a dbus-daemon for this user only, with its socket in a private folder. The destructor ends and removes
// both.
class PrivateBus {
 public:
  PrivateBus() {
    char folder[] = "/tmp/nurvo-bus-XXXXXX";
    folder_ = mkdtemp(folder);
    const std::vector<std::string> command = {"dbus-daemon", "--session", "--nofork", "--print-address",
                                              "--address=unix:path=" + folder_ + "/socket"};
    daemon_ = std::make_unique<Process>(command);
    address_ = daemon_->ReadLine();
  }
  ~PrivateBus() {
    Kill();
    unlink((folder_ + "/socket").c_str());
    rmdir(folder_.c_str());
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  const std::string& address() const { return address_; }
  // Ends the daemon, as if it had crashed.
  void Kill() { daemon_.reset(); }
  void Signal(int number) const { daemon_->Signal(number); }

 private:
  std::string folder_;
  std::string address_;
  std::unique_ptr<Process> daemon_;
};

// Runs the main loop until `condition` holds. Returns false after ten seconds.
inline bool WaitFor(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  // Wakes the loop up, so that the deadline is noticed when nothing happens.
  const guint ticks = g_timeout_add(
      10, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
  bool is_met = condition();
  while (!is_met && std::chrono::steady_clock::now() < deadline) {
    g_main_context_iteration(nullptr, TRUE);
    is_met = condition();
  }
  g_source_remove(ticks);
  return is_met;
}

#endif  // CORVIS_TESTING_PRIVATE_BUS_H_
