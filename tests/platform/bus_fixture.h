// A private bus, this process as one application on it, and programs as others.
#ifndef CORVIS_TESTS_PLATFORM_BUS_FIXTURE_H_
#define CORVIS_TESTS_PLATFORM_BUS_FIXTURE_H_

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "nurvo/message_port.h"
#include "testing/bundles.h"
#include "testing/private_bus.h"

constexpr const char* kOwnId = "com.example.page";
constexpr const char* kPeerId = "com.example.peer";
constexpr const char* kPort = "a port.with/odd_name";

class BusTest : public ::testing::Test {
 protected:
  BusTest() {
    setenv("DBUS_SESSION_BUS_ADDRESS", Bus().address().c_str(), 1);
    setenv("NURVO_APP_ID", kOwnId, 1);
  }
  ~BusTest() override {
    for (const int id : open_) message_port_unregister_local_port(id);
  }

  // The bus of this process: it has one connection for its life.
  static const PrivateBus& Bus() {
    static const PrivateBus bus;
    return bus;
  }

  struct Message {
    int port;
    std::string app_id;
    bool has_port;
    std::string id;
    std::string data;
  };

  // A peer that has opened its port.
  static std::unique_ptr<Process> StartPeer() {
    auto peer = std::make_unique<Process>(std::vector<std::string>{PEER_PROGRAM, "serve", kPort},
                                          Process::Environment{{"NURVO_APP_ID", kPeerId}, {"NURVO_LOG", ""}});
    EXPECT_EQ(peer->ReadLine(), "opened 1");
    return peer;
  }
  // Opens a port whose messages go to `received`.
  int Open(const char* name) {
    open_.push_back(message_port_register_local_port(name, OnMessage, this));
    return open_.back();
  }
  static int Send(const Entries& entries, const char* app_id = kPeerId) {
    return message_port_send_message(app_id, kPort, MakeBundle(entries).get());
  }

  std::vector<Message> received_;
  // Runs after each message has been recorded.
  std::function<void()> on_message_;

 private:
  static void OnMessage(int port, const char* app_id, const char* remote_port, bool /*trusted*/,
                        bundle* message, void* test) {
    auto* const self = static_cast<BusTest*>(test);
    const bool has_port = remote_port != nullptr;
    self->received_.push_back({port, app_id, has_port, TextOf(message, "id"), TextOf(message, "data")});
    if (self->on_message_) self->on_message_();
  }

  std::vector<int> open_;
};

#endif  // CORVIS_TESTS_PLATFORM_BUS_FIXTURE_H_
