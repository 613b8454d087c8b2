// Setting up and tearing down what the bus tests share.
#include "bus_fixture.h"

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
  // Wakes the loop up, so that the deadline is looked at when nothing happens.
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

const PrivateBus& BusTest::Bus() {
  static const PrivateBus bus;
  return bus;
}

BusTest::BusTest() {
  setenv("DBUS_SESSION_BUS_ADDRESS", Bus().address().c_str(), 1);
  setenv("NURVO_APP_ID", kOwnId, 1);
}

BusTest::~BusTest() {
  for (const int id : open_) message_port_unregister_local_port(id);
}

std::unique_ptr<Process> BusTest::StartPeer(const char* app_id) {
  auto peer = std::make_unique<Process>(std::vector<std::string>{PEER_PROGRAM, "serve", kPort},
                                        Process::Environment{{"NURVO_APP_ID", app_id}, {"NURVO_LOG", ""}});
  EXPECT_EQ(peer->ReadLine(), "opened 1");
  return peer;
}

int BusTest::Open(const char* name) {
  open_.push_back(message_port_register_local_port(name, OnMessage, this));
  return open_.back();
}

int BusTest::Send(const Entries& entries, const char* app_id) {
  return message_port_send_message(app_id, kPort, MakeBundle(entries).get());
}

void BusTest::OnMessage(int port, const char* app_id, const char* remote_port, bool /*trusted*/,
                        bundle* message, void* test) {
  auto* const self = static_cast<BusTest*>(test);
  self->received_.push_back(
      {port, app_id, remote_port != nullptr, TextOf(message, "id"), TextOf(message, "data")});
  if (self->on_message_) self->on_message_();
}
