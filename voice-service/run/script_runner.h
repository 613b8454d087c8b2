// Runs a voice script against an application, step by step.
#ifndef CORVIS_VOICE_RUN_SCRIPT_RUNNER_H_
#define CORVIS_VOICE_RUN_SCRIPT_RUNNER_H_

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/items.h"
#include "run/conversation.h"
#include "script/voice_script.h"

namespace corvis::voice {

// What became of a step.
struct StepResult {
  const Step* step = nullptr;
  bool is_ok = true;
  // Not run, because an earlier step of its test failed.
  bool is_skipped = false;
  // When it failed: why, and what was expected and found where that applies.
  std::string problem;
  std::string expected;
  std::string actual;
  // For a say or send: the turn that it took.
  const Turn* turn = nullptr;
  // For a show or value that held: what the page shows.
  std::string shown;
  std::chrono::microseconds took{0};
};

// Is told of a run as it goes on.
class Reporter {
 public:
  Reporter() = default;
  virtual ~Reporter() = default;
  Reporter(const Reporter&) = delete;
  Reporter& operator=(const Reporter&) = delete;
  virtual void OnScript(const VoiceScript& /*script*/) {}
  virtual void OnStep(const VoiceScript& /*script*/, const StepResult& /*result*/) {}
  // The whole run is over.
  virtual void OnEnd() {}
};

// How many steps there were.
struct RunTotals {
  int passed = 0;
  int failed = 0;
  int skipped = 0;
};

class ScriptRunner {
 public:
  // `deadline` ends the whole run, whatever it is at.
  ScriptRunner(Conversation& conversation, std::vector<Reporter*> reporters, Clock::time_point deadline);

  // Runs the steps of a script. A failed step ends its test; the next test of the script goes on.
  void Run(const VoiceScript& script);

  const RunTotals& totals() const { return totals_; }

 private:
  StepResult RunStep(const Step& step);
  void Check(StepResult& result, bool is_ok, const std::string& expected, const std::string& actual);
  // Runs `look` until it gives what the step expects or its time is over.
  void Poll(StepResult& result, const std::function<ControlResult()>& look);

  void Say(StepResult& result);
  void Inject(StepResult& result);
  void Expect(StepResult& result);
  void ExpectAction(StepResult& result);
  void Show(StepResult& result);
  void Value(StepResult& result);
  void CheckItems(StepResult& result);
  void CheckItem(StepResult& result, const ItemList& list);
  void CheckChange(StepResult& result, const ItemList& list);
  void Finish(StepResult& result, const std::string& problem);

  Conversation& conversation_;
  std::vector<Reporter*> reporters_;
  Clock::time_point deadline_;
  RunTotals totals_;
  Turn turn_;
  // The items that were asked for last, and whether nothing has been done since.
  std::optional<ItemList> items_;
  bool are_items_fresh_ = false;
  // The items before those, for comparing.
  std::optional<ItemList> items_before_;
};

}  // namespace corvis::voice

#endif  // CORVIS_VOICE_RUN_SCRIPT_RUNNER_H_
