// Runs a voice script against an application, step by step.
#ifndef CORVIS_KIT_SCRIPT_RUNNER_H_
#define CORVIS_KIT_SCRIPT_RUNNER_H_

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/items.h"
#include "app/conversation.h"
#include "script/script_reader.h"

namespace corvis::kit {

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
  // When it failed: the page's last console lines, and the picture that was made, if any.
  std::vector<std::string> console;
  std::string screenshot;
};

struct CoverageReport;

// How many steps there were; headings don't count.
struct RunTotals {
  int passed = 0;
  int failed = 0;
  int skipped = 0;
};

// Is told of a run as it goes on.
class Reporter {
 public:
  Reporter() = default;
  virtual ~Reporter() = default;
  Reporter(const Reporter&) = delete;
  Reporter& operator=(const Reporter&) = delete;
  virtual void OnStart(const std::vector<VoiceScript>& /*scripts*/) {}
  virtual void OnScript(const VoiceScript& /*script*/) {}
  virtual void OnStep(const VoiceScript& /*script*/, const StepResult& /*result*/) {}
  // The run could not begin.
  virtual void OnAbort(const std::string& /*sentence*/) {}
  // Only when it is asked for.
  virtual void OnCoverage(const CoverageReport& /*report*/) {}
  // The whole run is over; `status` is the process's.
  virtual void OnEnd(const RunTotals& /*totals*/, int /*status*/) {}
};

class ScriptRunner {
 public:
  // Makes a picture of the page for a failed step; gives the file's name, or nothing.
  using Photographer = std::function<std::string(const VoiceScript& script, const Step& step)>;

  ScriptRunner(Conversation& conversation, std::vector<Reporter*> reporters, Photographer photographer = {});
  ~ScriptRunner();
  ScriptRunner(const ScriptRunner&) = delete;
  ScriptRunner& operator=(const ScriptRunner&) = delete;

  // Runs the steps of a script; all but the first script begin with a fresh page. A failed step ends its
  // test; the next test of the script goes on. When the run is interrupted or its time is over, a last step
  // fails.
  void Run(const VoiceScript& script);

  // Waits before each thing said, for people who watch.
  void set_pace(std::chrono::milliseconds pace) { pace_ = pace; }

  const RunTotals& totals() const { return totals_; }

 private:
  struct Delayed;

  StepResult RunStep(const Step& step);
  void Do(StepResult& result);
  // Makes a failure tell more: the console, a picture.
  void Document(const VoiceScript& script, StepResult& result);
  // What must be in order before a test's first step; a sentence otherwise.
  std::string Prepare(const Step& step);
  void Check(StepResult& result, bool is_ok, const std::string& expected, const std::string& actual);
  // Checks a text by the step's matcher.
  void CheckText(StepResult& result, const std::string& actual);
  // Asks the page until it gives what the step expects or its time is over.
  void Poll(StepResult& result, const std::string& expression);

  void Say(StepResult& result);
  void Inject(StepResult& result);
  void InjectLater(const Step& step);
  // Waits for the answer of what was injected, once it is asked for.
  void FetchAnswer(std::chrono::milliseconds timeout);
  void Expect(StepResult& result);
  void ExpectAction(StepResult& result);
  void Show(StepResult& result);
  void Value(StepResult& result);
  void SetPrivileges(StepResult& result);
  void CheckItems(StepResult& result);
  bool AskItems(StepResult& result);
  void CheckItem(StepResult& result, const ItemList& list);
  void CheckChange(StepResult& result, const ItemList& list);
  void Finish(StepResult& result, const std::string& problem);

  Conversation& conversation_;
  std::vector<Reporter*> reporters_;
  Photographer photographer_;
  RunTotals totals_;
  std::chrono::milliseconds timeout_;
  std::chrono::milliseconds pace_{0};
  bool is_first_script_ = true;
  // Nothing runs any more.
  bool is_over_ = false;
  // The statement that follows the step that runs.
  const Step* next_ = nullptr;
  Turn turn_;
  // The injected command whose answer has not been asked for; 0 for none.
  uint64_t injected_ = 0;
  int crashes_ = 0;
  // How many exceptions the page had told of before the last thing said.
  size_t exceptions_ = 0;
  std::vector<std::unique_ptr<Delayed>> delayed_;
  // The items that were asked for last, and whether nothing has been done since.
  std::optional<ItemList> items_;
  bool are_items_fresh_ = false;
  // The items before those, for comparing.
  std::optional<ItemList> items_before_;
};

}  // namespace corvis::kit

#endif  // CORVIS_KIT_SCRIPT_RUNNER_H_
