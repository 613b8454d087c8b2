// The conversation with one application: phrases and raw commands out, answers in; the items on its screen.
// What the prompt and the scripts have in common.
#ifndef CORVIS_VOICE_RUN_CONVERSATION_H_
#define CORVIS_VOICE_RUN_CONVERSATION_H_

#include <chrono>
#include <deque>
#include <optional>
#include <string>

#include "core/items.h"
#include "core/registered_actions.h"
#include "service/runtime_control.h"
#include "service/voice_service.h"

namespace corvis::voice {

// What was said, what it became, and what came back.
struct Turn {
  std::string said;
  Command command;
  bool is_sent = false;
  Outcome outcome;
};

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

  // Plays the service's restart and waits until the application has registered again.
  std::string Restart();
  // Lets the page load again, or another page, and waits until it listens again.
  std::string Reload();
  std::string Open(const std::string& url);

  VoiceService& service() { return service_; }
  RuntimeControl& runtime() { return runtime_; }
  const std::string& app_id() const { return app_id_; }
  void set_timeout(std::chrono::milliseconds timeout) { timeout_ = timeout; }
  std::chrono::milliseconds timeout() const { return timeout_; }

  const RegisteredActions& registered() const { return registered_; }
  // The page's last console lines, oldest first, at most a few dozen.
  const std::deque<std::string>& console() const { return console_; }

 private:
  void TakeConsole(const std::string& level, const std::string& text, const std::string& source);
  std::string WaitForNewRegistration(int registered_before);
  // The selection of the one item with this title; a turn that says why not otherwise.
  Turn SelectByTitle(const std::string& phrase, const std::string& title);

  VoiceService& service_;
  std::string app_id_;
  std::chrono::milliseconds timeout_;
  RuntimeControl runtime_;
  RegisteredActions registered_;
  std::deque<std::string> console_;
  Turn items_turn_;
};

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_RUN_CONVERSATION_H_
