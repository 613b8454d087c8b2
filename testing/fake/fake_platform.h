// A recording and distrustful fake of the C interfaces in platform/include. Every call is counted and can be
// made to fail, and what it is handed is checked; nothing leaves the process.
#ifndef CORVIS_TESTING_FAKE_PLATFORM_H_
#define CORVIS_TESTING_FAKE_PLATFORM_H_

#include <unistd.h>

#include <functional>
#include <initializer_list>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "nurvo/app_event.h"
#include "nurvo/message_port.h"
#include "nurvo/vestra.h"
#include "testing/fake/code_scope.h"

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

constexpr const char* kMicrophoneUri = "http://" CORVIS_PRIVILEGE_HOST "/privilege/microphone";
constexpr const char* kVoiceControlUri = "http://" CORVIS_PRIVILEGE_HOST "/privilege/voicecontrol";

// What a failed call leaves in its outputs: a text that must be neither used nor freed.
constexpr const char* kLeftover = "left over from a failed call";

// How a call ends. A null answer is a success whose output is null.
enum class Outcome { kDone, kFailed, kNull };

class Platform {
 public:
  // The instance that the C functions act on; Reset replaces it.
  static Platform& Get();
  static void Reset();

  // The calls so far, by name and some with their arguments. Calls of the log and of bundles are only
  // counted.
  std::vector<std::string> calls;
  // Called from each of those calls, once the call has taken effect if it opens a port.
  std::function<void()> on_call;
  std::map<std::string, int> counts;
  std::vector<LogLine> log;
  // The messages that the port accepted, in order.
  std::vector<Entries> sent;
  std::map<int, Port> ports;
  // Subscriptions to events: handle to callback and user data.
  std::map<event_handler_h, std::pair<event_cb, void*>> events;
  // The objects that the library has got and not released, by kind.
  std::map<const void*, std::string> objects;
  // What no platform would accept: another process's id, an object that is not one, an exception of a
  // callback.
  std::vector<std::string> misuses;

  // The values that the platform returns.
  std::string app_id = "com.example.cinema";
  std::string label = "User::App::cinema";
  uid_t uid = 4'000'000'001;
  std::set<std::string> granted = {kMicrophoneUri, kVoiceControlUri};
  // The answer to the question for a privilege that is not granted.
  int refusal = 1;
  // A port refuses encoded messages larger than this many bytes.
  int port_limit = std::numeric_limits<int>::max();

  // Makes the `nth` call from now on of `name` (as in `calls`; 1 is the next) fail; with `for_ever` also all
  // later ones.
  void Fail(const std::string& name, int nth = 1, bool for_ever = false);
  // Makes the `nth` call of `name` from now on answer null.
  void AnswerNull(const std::string& name, int nth = 1);
  // Makes the `nth` call of any function from now on end so; with `for_ever` also all later ones.
  void EndCall(int nth, Outcome outcome, bool for_ever);
  void FailNothing();
  // The name of the first call that did not end as it should.
  std::string first_failed;
  int total_calls = 0;

  // Acts as the voice service: delivers a message to the open port. Returns false if no port is open.
  bool Deliver(const Entries& entries);
  bool Deliver(const std::string& command, const std::string& data) {
    return Deliver({{"command", command}, {"strData", data}});
  }
  // Publishes the service's start-up event. Returns the number of subscribers.
  int PublishStart();

  // Returns the messages since the last call as texts: "command|strData", followed by "|total" for a piece.
  std::vector<std::string> TakeSent();
  std::vector<std::string> TakeCalls() { return std::exchange(calls, {}); }
  // The texts of the log lines that contain `part`.
  std::vector<std::string> LogWith(const std::string& part) const;

  // Counts a call and returns how it must end.
  Outcome Count(const std::string& name, bool record);

  // Runs a callback of the library. It must not throw.
  template <typename Body>
  void CallBack(const Body& body) {
    try {
      const LibraryCode scope;
      body();
    } catch (...) {
      misuses.emplace_back("an exception of a callback");
    }
  }

 private:
  // The calls from `first` to `last`, of one function or of all.
  struct Plan {
    int first = 0;
    int last = 0;
    Outcome outcome = Outcome::kDone;

    Outcome Of(int count) const { return count >= first && count <= last ? outcome : Outcome::kDone; }
  };
  Outcome OutcomeOf(const std::string& name) const;

  std::map<std::string, Plan> plans_;
  Plan plan_;
};

// Encodes a bundle with these entries, as in a command's data.
std::string Encode(const Entries& entries);
// Like Encode, with an additional string array, an entry without a basic value, under `array_key`.
std::string EncodeWithArray(const Entries& entries, const std::string& array_key);

}  // namespace fake

#endif  // CORVIS_TESTING_FAKE_PLATFORM_H_
