// A private bus, this process as one application on it, and programs as others.
#ifndef CORVIS_TESTS_PLATFORM_BUS_FIXTURE_H_
#define CORVIS_TESTS_PLATFORM_BUS_FIXTURE_H_

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bundles.h"
#include "nurvo/message_port.h"
#include "process.h"

constexpr const char* kOwnId = "com.example.page";
constexpr const char* kPeerId = "com.example.peer";
constexpr const char* kPort = "a port.with/odd_name";

// dbus-daemon with a socket in a folder of its own.
class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();
  const std::string& address() const { return address_; }
  // Ends the daemon, as if it had crashed.
  void Kill() { daemon_.reset(); }
  void Signal(int number) const { daemon_->Signal(number); }

 private:
  std::string folder_;
  std::string address_;
  std::unique_ptr<Process> daemon_;
};

// Runs the main loop until `condition` holds; false when it does not within ten seconds.
bool WaitFor(const std::function<bool()>& condition);

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
