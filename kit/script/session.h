// What the statements of a script act on.
#ifndef CORVIS_KIT_SCRIPT_SESSION_H_
#define CORVIS_KIT_SCRIPT_SESSION_H_

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "app/conversation.h"
#include "events/events.h"
#include "script/dialogue.h"
#include "script/screen_items.h"
#include "script/script.h"
#include "script/verdict.h"

namespace corvis::kit {

// Whether the application has ended by itself. Nothing can be asked of it any more.
bool HasApplicationClosed();

class Session {
 public:
  // Waits for `pace` before each thing said, for people who watch.
  Session(Conversation& with, std::chrono::milliseconds pace)
      : conversation(with), dialogue(with), items(with), pace_(pace) {}

  // Does nothing for a while.
  static void Pause(std::chrono::milliseconds time);
  void KeepPace() const { Pause(pace_); }

  // Looks again and again, `interval` after each time, until the look passes or the time limit is over. Gives
  // the last verdict.
  Verdict Poll(std::chrono::milliseconds interval, const std::function<Verdict()>& look) const;

  Conversation& conversation;
  Dialogue dialogue;
  ScreenItems items;

  // Of the step that runs, for the reports: what it said, and what the page showed.
  std::optional<Exchange> exchange;
  std::string shown;
  // What follows the step that runs in its test; null at the end.
  const Step* next = nullptr;

 private:
  std::chrono::milliseconds pace_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SESSION_H_
