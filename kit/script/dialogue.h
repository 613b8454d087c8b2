// The latest exchange of a test with the application: what the test sent, and the answer.
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

  // Resets the state at the start of a test.
  void Begin();

  // Says a phrase or sends a command, and waits for the answer. The reference stays valid until the next
  // call.
  const Turn& Say(const std::string& phrase, std::chrono::milliseconds timeout);
  const Turn& Send(const Command& command, const std::string& said, std::chrono::milliseconds timeout);

  // Sends a message with exactly these entries. Answered waits for its answer.
  Status Inject(const Entries& entries);
  // Sends the message after `delay` and ignores its answer. `place` locates a failure.
  void InjectLater(const ScriptPlace& place, const Entries& entries, std::chrono::milliseconds delay);
  // Waits until all delayed messages have been sent.
  void WaitForLater();
  // The first delayed message that failed since the last call.
  Status LaterFailure();
  // Cancels the delayed messages that are still pending.
  void DropLater();

  // The latest turn. Waits for its answer if it is an injected message.
  const Turn& Answered(std::chrono::milliseconds timeout);
  const Turn& turn() const { return turn_; }

  // The exception of the callback that answered last; empty if it threw none.
  std::string Exception();

 private:
  class Later;

  // Stops expecting an answer to the last injected message.
  void DropInjected();

  Conversation& conversation_;
  Turn turn_;
  // The id of the injected command whose answer is outstanding; 0 for none.
  uint64_t injected_ = 0;
  std::list<Later> later_;
  Status later_failure_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_DIALOGUE_H_
