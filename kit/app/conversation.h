// The conversation with one application: sends phrases and raw commands, receives answers, and reads the
// items on its screen. The prompt and the script runner share it.
#ifndef CORVIS_KIT_APP_CONVERSATION_H_
#define CORVIS_KIT_APP_CONVERSATION_H_

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/callback_log.h"
#include "app/item_places.h"
#include "app/items.h"
#include "app/registered_actions.h"
#include "app/runtime_control.h"
#include "language/phrasebook.h"
#include "service/voice_service.h"

namespace corvis::kit {

// The URI of a privilege's short name, such as "microphone". A URI is returned unchanged.
std::string PrivilegeUri(const std::string& name);

// One turn of the conversation: the phrase, the command made from it, and the answer.
struct Turn {
  std::string said;
  Command command;
  bool is_sent = false;
  Result<Answer> answer = Fail("Nothing was said yet.");
  // The title of the item, if the phrase was only its title or named its place.
  std::string item;
};

// What to expect of the application after its page is loaded or the service restarts.
struct Arrival {
  // True: it registers again. False: it does not register within `quiet`.
  bool is_listening = true;
  std::chrono::milliseconds quiet{0};
};

// "12 items; 1234 bytes, 3.4 ms"; for an answer in pieces, also the time to the first and to the last piece.
std::string DescribeItemsAnswer(const ItemList& list, const Answer& answer);

class Conversation {
 public:
  Conversation(VoiceService& service, std::string app_id, std::chrono::milliseconds timeout);

  // Waits until the page is loaded, whether it listens or not. Fails with kNoApplication.
  Status WaitForPage(std::chrono::milliseconds timeout);
  // Waits until the application has registered and its page is loaded. Fails with kNoApplication.
  Status WaitForApp(std::chrono::milliseconds timeout);
  // Waits, up to the time limit, until the page has loaded and changed nothing for a quarter of a second.
  void WaitForRest();
  // Lets Say and Send wait for a page that doesn't listen yet, up to the time limit. Otherwise they fail at
  // once.
  void WaitToBeHeard() { waits_to_be_heard_ = true; }

  // The phrases of the language; English by default.
  const Phrasebook& phrases() const { return phrases_ ? *phrases_ : Phrasebook::English(); }
  void set_phrases(Phrasebook phrases) { phrases_ = std::move(phrases); }

  // Says a phrase. A text that matches no phrase but is the title of an item on the screen selects the item.
  Turn Say(const std::string& phrase);
  Turn Send(const Command& command, const std::string& said);
  // Sends a bundle unchanged, without waiting for an answer: see VoiceService::Inject.
  Result<uint64_t> Inject(const Entries& entries);
  Result<Answer> Await(uint64_t command_id, std::chrono::milliseconds timeout);
  // The exception behind the answer "not_support"; empty if there is none. `turn` must be the most recent
  // one.
  std::string ExceptionOf(const Turn& turn);

  // Asks the application for the items on its screen.
  Result<ItemList> AskItems();
  // Looks for the items in the page, whether it listens or not.
  Result<ItemList> LookForItems();
  // The turn of the last AskItems.
  const Turn& items_turn() const { return items_turn_; }

  // Where the items are on the page.
  Result<ItemPlaces> PlacesOf(const ItemList& list);
  // Notes which items are not shown because their frames aren't. Changes nothing if the page does not
  // respond.
  void NoteHidden(ItemList& list);
  // A screenshot of the page with the boxes and numbers of the items that are shown, as PNG.
  Result<std::string> PictureOf(const ItemList& list);

  // Runs `start`, which starts the application again, and waits until its page is loaded.
  Status StartAgain(const std::function<Status()>& start, std::chrono::milliseconds limit);

  // Simulates a restart of the voice service, then waits for `arrival`.
  Status Restart(const Arrival& arrival = {});
  // Reloads the page, or loads another one, then waits for `arrival`.
  Status Reload(const Arrival& arrival = {});
  Status Open(const std::string& url, const Arrival& arrival = {});

  // Kills the page's process if the page hangs, so that the runtime reloads it. Returns an error in that
  // case.
  Status Recover();

  // Saves the current page and the application's privileges (URIs) as the initial state. What pages store is
  // cleared to restore it, unless `is_storage_kept`.
  Status NoteBeginning(std::vector<std::string> privileges, bool is_storage_kept);
  // Restores the initial state: grants the privileges and loads the page.
  Status BeginAnew();

  // Replaces the privileges (URIs) of the application.
  Status SetPrivileges(std::vector<std::string> uris);
  // Notes the privileges with which the application was started.
  void NotePrivileges(std::vector<std::string> uris) { held_privileges_ = std::move(uris); }

  bool is_listening() const { return service_.HasApp(app_id_); }
  VoiceService& service() { return service_; }
  RuntimeControl& runtime() { return runtime_; }
  const std::string& app_id() const { return app_id_; }
  void set_timeout(std::chrono::milliseconds timeout);
  std::chrono::milliseconds timeout() const { return timeout_; }

  const RegisteredActions& registered() const { return registered_; }
  // The page's most recent console lines, oldest first.
  const std::deque<std::string>& console() const { return console_; }
  void ForgetConsole() { console_.clear(); }
  // A sentence with the first error on the page's console, or, if there is none, a hint.
  std::string WhyItMayNotListen() const;
  // " Its console says: …" with the first error on the page's console, or nothing.
  std::string ConsoleError() const;
  // Callbacks for console lines and crashes, as they happen.
  void set_on_console(RuntimeControl::ConsoleSink take) { on_console_ = std::move(take); }
  // A second callback for console lines, for those who record them.
  void set_console_recorder(RuntimeControl::ConsoleSink take) { console_recorder_ = std::move(take); }
  void set_on_crash(std::function<void()> take) { on_crash_ = std::move(take); }
  // The number of crashes of the page's process so far.
  int crashes() const { return crashes_; }

 private:
  // Waits for the page's images and frames, which may load after listen(). Returns at once without a runtime.
  void WaitForLoad(std::chrono::milliseconds timeout);
  void TakeConsole(const std::string& level, const std::string& text, const std::string& source);
  // Runs `change`, then waits for `arrival`.
  template <typename Change>
  Status Arrive(const Arrival& arrival, Change change);
  Status WaitForArrival(const Arrival& arrival, int registered_before, Clock::time_point end);
  // Fails unless the page listens, or starts to in time.
  Status CheckListening();
  Error WhyAbsent(std::chrono::milliseconds timeout) const;
  // Sends the command of a phrase with the number of its item. Without exactly one such item, returns a turn
  // that is not sent and says why.
  Turn SayOfItem(const std::string& phrase, Understood understood);
  Turn SayTitle(const std::string& phrase);

  VoiceService& service_;
  std::string app_id_;
  std::chrono::milliseconds timeout_;
  RuntimeControl runtime_;
  std::optional<Phrasebook> phrases_;
  RegisteredActions registered_;
  std::deque<std::string> console_;
  RuntimeControl::ConsoleSink on_console_;
  RuntimeControl::ConsoleSink console_recorder_;
  std::function<void()> on_crash_;
  CallbackLog callbacks_;
  int crashes_ = 0;
  // The value of crashes_ at the last send.
  int crashes_before_ = 0;
  bool waits_to_be_heard_ = false;
  // The first uncaught error of the page, or else the first error on its console.
  std::string page_error_;
  // The number of loaded pages so far, and as of the last crash.
  int loads_ = 0;
  int loads_before_crash_ = 0;
  std::string home_;
  std::vector<std::string> privileges_;
  std::vector<std::string> held_privileges_;
  bool is_storage_kept_ = false;
  Turn items_turn_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_APP_CONVERSATION_H_
