// A recording platform: the C interfaces of platform/include, in memory. Every call is counted and can be
// made to fail; nothing talks to anything outside the process.
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
  // The one that the C functions act on; made anew by Reset.
  static Platform& Get();
  static void Reset();

  // The calls so far, by name (some with their arguments), without those of the log and of bundles, which are
  // counted only.
  std::vector<std::string> calls;
  // Runs within each of those calls.
  std::function<void()> on_call;
  std::map<std::string, int> counts;
  std::vector<LogLine> log;
  // The messages that the port accepted, in order.
  std::vector<Entries> sent;
  std::map<int, Port> ports;
  // Subscriptions to events: handle to callback and user data.
  std::map<event_handler_h, std::pair<event_cb, void*>> events;

  // What the platform answers.
  std::string app_id = "com.example.cinema";
  std::string label = "User::App::cinema";
  std::set<std::string> granted_paths = {"/privilege/microphone", "/privilege/voicecontrol"};
  // A port refuses encoded messages above this as too large.
  int port_limit = std::numeric_limits<int>::max();

  // From now on the `nth` call of `name`, as `calls` has it, fails (1 is the next); with `for_ever` all later
  // ones, too.
  void Fail(const std::string& name, int nth = 1, bool for_ever = false);
  // The `nth` call from now on fails, whatever it is; with `for_ever` all later ones, too.
  void FailCall(int nth, bool for_ever);
  void FailNothing();
  // The name of the first call that was made to fail.
  std::string first_failed;
  int total_calls = 0;

  // Acts as the voice service: delivers a message to the open port. False when none is open.
  bool Deliver(const Entries& entries);
  bool Deliver(const std::string& command, const std::string& data);
  // Publishes the service's start-up event. Returns the number of subscribers.
  int PublishStart() const;

  // The messages since the last call, one text each: "command|strData" and, for a piece, "|total".
  std::vector<std::string> TakeSent();
  std::vector<std::string> TakeCalls();
  // The texts of the log lines that hold `part`.
  std::vector<std::string> LogWith(const std::string& part) const;

  // Counts a call; true when it is to fail.
  bool Count(const std::string& name, bool record = true);

 private:
  bool IsToFail(const std::string& name) const;

  std::map<std::string, std::pair<int, bool>> failures_;
  int fail_from_ = 0;
  bool fail_for_ever_ = false;
};

// The text form of a bundle with these entries, as commands carry it.
std::string Encode(const Entries& entries);
// The same with one entry under `array_key` that has no basic value.
std::string EncodeWithArray(const Entries& entries, const std::string& array_key);

}  // namespace fake

#endif  // CORVIS_TESTING_FAKE_PLATFORM_H_
