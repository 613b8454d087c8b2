// The conversation with one application: phrases and raw commands out, answers in; the items on its screen.
// What the prompt and the scripts have in common.
#ifndef CORVIS_KIT_APP_CONVERSATION_H_
#define CORVIS_KIT_APP_CONVERSATION_H_

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/callback_log.h"
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
  Result<Answer> answer = Fail("Nothing was said yet.");
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

  // Waits until the application has registered. Fails with kNoApplication.
  Status WaitForApp(std::chrono::milliseconds timeout);

  // Says a phrase: one of the phrase table, or "select TITLE" for an item of the screen.
  Turn Say(const std::string& phrase);
  Turn Send(const Command& command, const std::string& said);
  // Sends a bundle as it is and does not wait: see VoiceService::Inject.
  Result<uint64_t> Inject(const Entries& entries);
  Result<Answer> Await(uint64_t command_id, std::chrono::milliseconds timeout);
  // What the callback threw when the turn's answer, the last to come, is "not_support" because of that; empty
  // otherwise.
  std::string ExceptionOf(const Turn& turn);

  // Asks for the items on the screen.
  Result<ItemList> AskItems();
  // The turn of the last AskItems.
  const Turn& items_turn() const { return items_turn_; }

  // A picture of the page with the items' boxes and numbers on it, as a PNG file's bytes.
  Result<std::string> PictureOf(const ItemList& list);

  // Plays the service's restart, and waits for what is expected of the application then.
  Status Restart(const Arrival& arrival = {});
  // Lets the page load again, or another page, and waits likewise.
  Status Reload(const Arrival& arrival = {});
  Status Open(const std::string& url, const Arrival& arrival = {});

  // Makes a page respond that hangs: ends its process, so that the runtime loads the page again. An error
  // then says so.
  Status Recover();

  // Remembers the page that is shown, and the privileges that the application was given (URIs), as its
  // beginning.
  Status NoteBeginning(std::vector<std::string> privileges);
  // Goes back there: the privileges, and a fresh page that listens.
  Status BeginAnew();

  VoiceService& service() { return service_; }
  RuntimeControl& runtime() { return runtime_; }
  const std::string& app_id() const { return app_id_; }
  void set_timeout(std::chrono::milliseconds timeout);
  std::chrono::milliseconds timeout() const { return timeout_; }

  const RegisteredActions& registered() const { return registered_; }
  // The page's last console lines, oldest first, at most a few dozen.
  const std::deque<std::string>& console() const { return console_; }
  void ForgetConsole() { console_.clear(); }
  // A sentence: the first error on the page's console, or else a question.
  std::string WhyItMayNotListen() const;
  // Take what the page does by itself, as it happens.
  void set_on_console(RuntimeControl::ConsoleSink take) { on_console_ = std::move(take); }
  void set_on_crash(std::function<void()> take) { on_crash_ = std::move(take); }
  // How often the page's process has crashed.
  int crashes() const { return crashes_; }

 private:
  // A page may listen before its images and frames are there. Waits for them where the runtime tells.
  void WaitForLoad(std::chrono::milliseconds timeout);
  void TakeConsole(const std::string& level, const std::string& text, const std::string& source);
  // Does what `change` does to the application, and waits for what is expected then.
  template <typename Change>
  Status Arrive(const Arrival& arrival, Change change);
  Status WaitForArrival(const Arrival& arrival, int registered_before, Clock::time_point end);
  Error WhyAbsent(std::chrono::milliseconds timeout) const;
  // The selection of the one item with this title; a turn that says why not otherwise.
  Turn SelectByTitle(const std::string& phrase, const std::string& title);

  VoiceService& service_;
  std::string app_id_;
  std::chrono::milliseconds timeout_;
  RuntimeControl runtime_;
  RegisteredActions registered_;
  std::deque<std::string> console_;
  RuntimeControl::ConsoleSink on_console_;
  std::function<void()> on_crash_;
  CallbackLog callbacks_;
  int crashes_ = 0;
  // As of the last thing sent.
  int crashes_before_ = 0;
  std::string home_;
  std::vector<std::string> privileges_;
  Turn items_turn_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_CONVERSATION_H_
