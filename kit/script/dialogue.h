// What a test has said to the application last, and what came back.
#ifndef CORVIS_KIT_SCRIPT_DIALOGUE_H_
#define CORVIS_KIT_SCRIPT_DIALOGUE_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <list>
#include <string>

#include "app/conversation.h"
#include "base/result.h"
#include "events/events.h"
#include "language/actions.h"

namespace corvis::kit {

class Dialogue {
 public:
  explicit Dialogue(Conversation& conversation);
  ~Dialogue();
  Dialogue(const Dialogue&) = delete;
  Dialogue& operator=(const Dialogue&) = delete;

  // A test begins: nothing was said.
  void Begin();

  // Says a phrase, or sends a command, and waits for the answer.
  const Turn& Say(const std::string& phrase, std::chrono::milliseconds timeout);
  const Turn& Send(const Command& command, const std::string& said, std::chrono::milliseconds timeout);

  // Sends a message with exactly these entries. Its answer comes by Answered.
  Status Inject(const Entries& entries);
  // The same after a time; nobody waits for the answer.
  void InjectLater(const ScriptPlace& place, const Entries& entries, std::chrono::milliseconds delay);
  // Waits until every such message was sent.
  void WaitForLater();
  // The first of them that could not be sent since this was asked for last.
  Status LaterFailure();
  // Drops those that are not sent yet.
  void DropLater();

  // What was said last, with its answer: that to an injected message is waited for.
  const Turn& Answered(std::chrono::milliseconds timeout);
  const Turn& turn() const { return turn_; }

  // What the callback threw that answered last; empty when it did not.
  std::string Exception();

 private:
  class Later;

  // What was injected last will not be asked for any more.
  void DropInjected();

  Conversation& conversation_;
  Turn turn_;
  // The injected command whose answer has not been asked for; 0 for none.
  uint64_t injected_ = 0;
  std::list<Later> later_;
  Status later_failure_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_DIALOGUE_H_
