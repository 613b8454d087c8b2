// A recording fake of the C interfaces in platform/include. Every call is counted and can be made to fail;
// nothing leaves the process.
#ifndef CORVIS_TESTING_FAKE_PLATFORM_H_
#define CORVIS_TESTING_FAKE_PLATFORM_H_

#include <functional>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "nurvo/app_event.h"
#include "nurvo/message_port.h"

namespace fake {

using Entries = std::vector<std::pair<std::string, std::string>>;

struct LogLine {
  int priority;
  std::string tag;
  std::string text;
};

struct Port {
  std::string name;
  message_port_message_cb callback;
  void* user_data;
};

class Platform {
 public:
  // The instance that the C functions act on; Reset replaces it.
  static Platform& Get();
  static void Reset();

  // The calls so far, by name and some with their arguments. Calls of the log and of bundles are only
  // counted.
  std::vector<std::string> calls;
  // Called from each of those calls.
  std::function<void()> on_call;
  std::map<std::string, int> counts;
  std::vector<LogLine> log;
  // The messages that the port accepted, in order.
  std::vector<Entries> sent;
  std::map<int, Port> ports;
  // Subscriptions to events: handle to callback and user data.
  std::map<event_handler_h, std::pair<event_cb, void*>> events;

  // The values that the platform returns.
  std::string app_id = "com.example.cinema";
  std::string label = "User::App::cinema";
  std::set<std::string> granted_paths = {"/privilege/microphone", "/privilege/voicecontrol"};
  // A port refuses encoded messages larger than this many bytes.
  int port_limit = std::numeric_limits<int>::max();

  // Makes the `nth` call from now on of `name` (as in `calls`; 1 is the next) fail; with `for_ever` also all
  // later ones.
  void Fail(const std::string& name, int nth = 1, bool for_ever = false);
  // Makes the `nth` call of any function from now on fail; with `for_ever` also all later ones.
  void FailCall(int nth, bool for_ever);
  void FailNothing();
  // The name of the first call that was made to fail.
  std::string first_failed;
  int total_calls = 0;

  // Acts as the voice service: delivers a message to the open port. Returns false if no port is open.
  bool Deliver(const Entries& entries);
  bool Deliver(const std::string& command, const std::string& data) {
    return Deliver({{"command", command}, {"strData", data}});
  }
  // Publishes the service's start-up event. Returns the number of subscribers.
  int PublishStart() const;

  // Returns the messages since the last call as texts: "command|strData", followed by "|total" for a piece.
  std::vector<std::string> TakeSent();
  std::vector<std::string> TakeCalls() { return std::exchange(calls, {}); }
  // The texts of the log lines that contain `part`.
  std::vector<std::string> LogWith(const std::string& part) const;

  // Counts a call. Returns whether it must fail.
  bool Count(const std::string& name, bool record = true);

 private:
  bool IsToFail(const std::string& name) const;

  std::map<std::string, std::pair<int, bool>> failures_;
  std::pair<int, bool> failure_;
};

// Encodes a bundle with these entries, as in a command's data.
std::string Encode(const Entries& entries);
// Like Encode, with an additional string array, an entry without a basic value, under `array_key`.
std::string EncodeWithArray(const Entries& entries, const std::string& array_key);

}  // namespace fake

#endif  // CORVIS_TESTING_FAKE_PLATFORM_H_
