// The conversation with one application: phrases and raw commands out, answers in; the items on its screen.
// What the prompt and the scripts have in common.
#ifndef CORVIS_KIT_APP_CONVERSATION_H_
#define CORVIS_KIT_APP_CONVERSATION_H_

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "app/items.h"
#include "app/registered_actions.h"
#include "app/runtime_control.h"
#include "service/voice_service.h"

namespace corvis::kit {

// The URI of "microphone" or "voicecontrol"; a URI stays as it is.
std::string PrivilegeUri(const std::string& name);

// What was said, what it became, and what came back.
struct Turn {
  std::string said;
  Command command;
  bool is_sent = false;
  Outcome outcome;
};

// What is expected of the application after its page was loaded or the service restarted.
struct Arrival {
  // It registers again; or, when false, it does not for as long as `quiet`.
  bool is_listening = true;
  std::chrono::milliseconds quiet{0};
};

// "12 items; 1234 bytes, 3.4 ms", with the split of the time for an answer in pieces.
std::string DescribeItemsAnswer(const ItemList& list, const Answer& answer);

class Conversation {
 public:
  Conversation(VoiceService& service, std::string app_id, std::chrono::milliseconds timeout);

  // Waits until the application has registered. A sentence on failure.
  std::string WaitForApp(std::chrono::milliseconds timeout);

  // Says a phrase: one of the phrase table, or "select TITLE" for an item of the screen.
  Turn Say(const std::string& phrase);
  Turn Send(const Command& command, const std::string& said);

  // Asks for the items on the screen. Nothing and a sentence on failure.
  std::optional<ItemList> AskItems(std::string& problem);
  // The turn of the last AskItems.
  const Turn& items_turn() const { return items_turn_; }

  // A picture of the page with the items' boxes and numbers on it, as a PNG file's bytes. Nothing and a
  // sentence on failure.
  std::string PictureOf(const ItemList& list, std::string& problem);

  // Plays the service's restart, and waits for what is expected of the application then.
  std::string Restart(const Arrival& arrival = {});
  // Lets the page load again, or another page, and waits likewise.
  std::string Reload(const Arrival& arrival = {});
  std::string Open(const std::string& url, const Arrival& arrival = {});

  // Remembers the page that is shown, and the privileges that the application was given, as its beginning.
  std::string NoteBeginning(std::vector<std::string> privileges);
  // Goes back there: the privileges, and a fresh page that listens.
  std::string BeginAnew();

  VoiceService& service() { return service_; }
  RuntimeControl& runtime() { return runtime_; }
  const std::string& app_id() const { return app_id_; }
  void set_timeout(std::chrono::milliseconds timeout);
  std::chrono::milliseconds timeout() const { return timeout_; }

  const RegisteredActions& registered() const { return registered_; }
  // The page's last console lines, oldest first, at most a few dozen.
  const std::deque<std::string>& console() const { return console_; }
  // What the script API's console said of exceptions in callbacks, oldest first.
  const std::vector<std::string>& exceptions() const { return exceptions_; }
  // What the callback threw when the turn's answer is "not_support" because of that; empty otherwise.
  std::string ExceptionOf(const Turn& turn, size_t exceptions_before);
  void ForgetConsole() { console_.clear(); }
  // A sentence: the first error on the page's console, or else a question.
  std::string WhyItMayNotListen() const;
  // How often the page's process has crashed.
  int crashes() const { return crashes_; }
  // When an answer is missing because the page's process crashed: says so.
  void ExplainDeparture(Outcome& outcome, int crashes_before);

 private:
  // A page may listen before its images and frames are there. Waits for them where the runtime tells.
  void WaitForLoad(std::chrono::milliseconds timeout);
  void TakeConsole(const std::string& level, const std::string& text, const std::string& source);
  std::string WaitForArrival(const Arrival& arrival, int registered_before, Clock::time_point end);
  // The selection of the one item with this title; a turn that says why not otherwise.
  Turn SelectByTitle(const std::string& phrase, const std::string& title);

  VoiceService& service_;
  std::string app_id_;
  std::chrono::milliseconds timeout_;
  RuntimeControl runtime_;
  RegisteredActions registered_;
  std::deque<std::string> console_;
  std::vector<std::string> exceptions_;
  int crashes_ = 0;
  std::string home_;
  std::vector<std::string> privileges_;
  Turn items_turn_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_CONVERSATION_H_
