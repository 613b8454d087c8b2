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
  BusTest();
  ~BusTest() override;

  // The bus of this process: it has one connection for its life.
  static const PrivateBus& Bus();

  struct Message {
    int port;
    std::string app_id;
    bool has_port;
    std::string id;
    std::string data;
  };

  // A peer that has opened its port.
  std::unique_ptr<Process> StartPeer(const char* app_id = kPeerId);
  // Opens a port whose messages go to `received`.
  int Open(const char* name);
  static int Send(const Entries& entries, const char* app_id = kPeerId);

  std::vector<Message> received_;
  // Runs after each message has been recorded.
  std::function<void()> on_message_;

 private:
  static void OnMessage(int port, const char* app_id, const char* remote_port, bool trusted, bundle* message,
                        void* test);

  std::vector<int> open_;
};

#endif  // CORVIS_TESTS_PLATFORM_BUS_FIXTURE_H_
