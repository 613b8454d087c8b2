// The state of a script run that the statements act on.
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

// Whether the application has ended by itself, so that it can't be queried.
bool HasApplicationClosed();

class Session {
 public:
  // KeepPace waits for `pace`, so that a person can follow the run.
  Session(Conversation& with, std::chrono::milliseconds pace)
      : conversation(with), dialogue(with), items(with), pace_(pace) {}

  // Runs the main loop for `time`.
  static void Pause(std::chrono::milliseconds time);
  void KeepPace() const { Pause(pace_); }

  // Calls `look` every `interval` until it passes or the time limit is over. Returns the last verdict.
  Verdict Poll(std::chrono::milliseconds interval, const std::function<Verdict()>& look) const;

  Conversation& conversation;
  Dialogue dialogue;
  ScreenItems items;

  // For the reports: what the current step sent and what the page showed.
  std::optional<Exchange> exchange;
  std::string shown;
  // The next step of the current test; null at the end.
  const Step* next = nullptr;

 private:
  std::chrono::milliseconds pace_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_SESSION_H_
