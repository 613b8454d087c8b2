// Starts and stops the bus, and waits on the main loop.
#include "testing/private_bus.h"

#include <glib.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

PrivateBus::PrivateBus() {
  char folder[] = "/tmp/nurvo-bus-XXXXXX";
  folder_ = mkdtemp(folder);
  daemon_ = std::make_unique<Process>(std::vector<std::string>{"dbus-daemon", "--session", "--nofork",
                                                               "--print-address",
                                                               "--address=unix:path=" + folder_ + "/socket"});
  address_ = daemon_->ReadLine();
}

PrivateBus::~PrivateBus() {
  Kill();
  unlink((folder_ + "/socket").c_str());
  rmdir(folder_.c_str());
}

bool WaitFor(const std::function<bool()>& condition) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  // Wakes the loop up regularly, so that the deadline is checked even if nothing happens.
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
