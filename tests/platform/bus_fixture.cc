// Setting up and tearing down what the bus tests share.
#include "bus_fixture.h"

#include <cstdlib>

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
